#pragma once

// How a test asks the program under test what its windows show; see uiautomationcore.cpp.

constexpr int ReaderPageBytes = 4 * 1024 * 1024; ///< of the mapping, more than any window tells
constexpr wchar_t ReaderPageName[] = L"worklog-reader-"; ///< and the program's process id
constexpr long ReaderObjectId = -25; ///< what WM_GETOBJECT asks for: the window's root

/// The kinds of controls that a test tells apart, as Windows numbers them.
namespace ControlType {
constexpr int Button = 50000;
constexpr int ComboBox = 50003;
constexpr int Edit = 50004;
constexpr int MenuBar = 50010;
constexpr int MenuItem = 50011;
constexpr int ProgressBar = 50012;
constexpr int Spinner = 50016;
} // namespace ControlType
