// Pictures of what a person sees of the program: its item in the panel, its menu, its windows.
#pragma once

#include "main_job/stage.h"

#include <filesystem>
#include <vector>

namespace hopsel::main_job {

/// Opens one after the other on the stage and writes a PNG of each into the folder, which is made. The paths,
/// in order. Throws `std::runtime_error`, also if one shows nothing else than another.
std::vector<std::filesystem::path> takePictures(Stage& stage, const std::filesystem::path& folder);

} // namespace hopsel::main_job
