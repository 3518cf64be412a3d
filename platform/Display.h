#pragma once

/// To be called before the application object of a program that also works where there is no
/// display: has the windows shown on the display if there is one, else drawn nowhere. A choice
/// that was made in the environment (QT_QPA_PLATFORM) stands.
void ChooseDisplay();

/// To be called before the application object of a program that shows nothing and uses the toolkit
/// for its fonts alone: a display is not needed.
void NeedNoDisplay();
