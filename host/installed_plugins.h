// Where plug-ins are installed.
#pragma once

#include <filesystem>
#include <vector>

#include "ombrix/host.h"

namespace ombrix::host {

/// An Error when it is missing.
std::filesystem::path StandardPlugin();

/// All others, in the order that Host::LoadInstalled documents; files of a folder by their names, each file once by
/// whatever names it is found. Files that $OMBRIX_PLUGINS names are there whether they exist or not, and
/// folders there that cannot be read are added to `broken`.
std::vector<std::filesystem::path> InstalledPlugins(std::vector<BrokenPlugin>& broken);

}  // namespace ombrix::host
