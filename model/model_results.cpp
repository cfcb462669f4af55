#include "model/model_results.h"

#include "core/base/overloaded.h"

namespace hopsel {

namespace {

std::string describe(const StoreError::Reason& reason) {
    return std::visit(
        Overloaded{
            [](const store_error::Corrupt& corrupt) {
                return "corrupt(" + corrupt.backupPath.value_or("nil") + ")";
            },
            [](const store_error::UnsupportedSchemaVersion& unsupported) {
                return "unsupportedSchemaVersion(" + std::to_string(unsupported.version) + ")";
            },
            [](const store_error::Invalid& invalid) {
                return "invalid(" + std::to_string(invalid.issues.size()) + ")";
            },
            [](const store_error::DuplicateId& duplicate) { return "duplicateId(" + duplicate.id + ")"; },
            [](const store_error::NotFound& notFound) { return "notFound(" + notFound.id + ")"; },
            [](const store_error::WriteFailed& failed) { return "writeFailed(" + failed.description + ")"; },
            [](const store_error::NotLoaded&) { return std::string("notLoaded"); },
        },
        reason);
}

} // namespace

std::string textualDescription(const std::exception& error) {
    const auto* storeError = dynamic_cast<const StoreError*>(&error);
    return storeError != nullptr ? describe(storeError->reason()) : error.what();
}

} // namespace hopsel
