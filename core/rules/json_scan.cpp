#include "core/rules/json_scan.h"

#include <nlohmann/json.hpp>
#include <string>

namespace hopsel::json_scan {
namespace {

using Json = nlohmann::json;

class Scanner final : public nlohmann::json_sax<Json> {
  public:
    explicit Scanner(const Limits& limits) : limits_(limits) {}

    const Result& result() const { return result_; }

    bool null() override { return value(); }
    bool boolean(bool) override { return value(); }
    bool number_integer(std::int64_t number) override { return value(number); }
    bool number_unsigned(std::uint64_t number) override {
        if (number > std::uint64_t{std::numeric_limits<std::int64_t>::max()}) return value();
        return value(static_cast<std::int64_t>(number));
    }
    bool number_float(double, const std::string&) override { return value(); }
    bool string(std::string&) override { return value(); }
    bool binary(Json::binary_t&) override { return value(); }

    bool start_object(std::size_t) override { return open(); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(); }
    bool end_array() override { return close(); }

    bool key(std::string& name) override {
        versionIsNext_ = depth_ == 1 && name == "schemaVersion";
        return true;
    }

    bool parse_error(std::size_t position, const std::string&, const Json::exception&) override {
        result_.verdict = Verdict::malformed;
        result_.errorPosition = position;
        return false;
    }

  private:
    bool value(std::optional<std::int64_t> number = std::nullopt) {
        if (versionIsNext_) result_.schemaVersion = number;
        versionIsNext_ = false;
        return ++values_ <= limits_.values;
    }
    bool open() {
        const bool withinValues = value();
        return ++depth_ <= limits_.depth && withinValues;
    }
    bool close() {
        --depth_;
        return true;
    }

    Limits limits_;
    // Stays so when a limit makes the parser stop without an error of its own.
    Result result_{Verdict::beyondLimits, 0, std::nullopt};
    std::size_t depth_ = 0;
    std::size_t values_ = 0;
    bool versionIsNext_ = false;
};

} // namespace

Result scan(std::string_view text, const Limits& limits) {
    // The parser takes a NUL for the end of the text and would accept a document with anything behind it.
    if (const auto nul = text.find('\0'); nul != std::string_view::npos) {
        return {Verdict::malformed, nul, std::nullopt};
    }
    Scanner scanner(limits);
    const bool finished = Json::sax_parse(text, &scanner);
    Result result = scanner.result();
    if (finished) result.verdict = Verdict::wellFormed;
    return result;
}

} // namespace hopsel::json_scan
