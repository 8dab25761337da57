// Finds values that are wrong or mean nothing before any file is read, by trying them on small pictures.
#pragma once

#include <functional>
#include <vector>

#include "cli/effect_object.h"
#include "cli/session.h"

namespace ombrix::cli {

/// A UsageError when an effect refuses a value or lacks a picture. It says what would have worked. Notes values that
/// the effect takes although they mean nothing, and when none is given that it needs to change anything.
void CheckValues(Session& session, const host::ClassInfo& type, const std::vector<PlannedSetting>& settings);

/// Opens the files of a command. When they are to blame, `check` has the first word, in a worker: a wrong value is told
/// before a missing file.
void AfterValues(Session& session, const std::function<void(Session&)>& check, const std::function<void()>& openFiles);

}  // namespace ombrix::cli
