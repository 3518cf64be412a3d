#pragma once

/// To be called before the application object: settles how windows are drawn, where the system
/// leaves that to the program. A choice that was made in the environment stands.
void ChooseLook();
