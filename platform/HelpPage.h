#pragma once

/// The property by which a window names the help page of its present state, when that is another
/// one than the page about the window. It has no value otherwise.
constexpr const char *HelpPageProperty = "HelpPage";
