#pragma once

#include <functional>

/// Runs work that can take long, such as calls to a slow disk or to a network folder that does not
/// answer, and returns when it is done. The windows stay painted meanwhile.
///
/// Shape:  the work runs on another thread. Work that is done in an instant is simply waited for.
///         After that the pointer is busy, and window events run without those of the user: keys,
///         clicks, and the like are kept and arrive in their order afterwards, closing a window
///         arrives afterwards or is refused. So no second command begins, and no input is lost.
///         Without windows, or called on another thread, the work runs on the caller's thread.
/// Caller: what else can run here are the program's own queued calls. What the work uses must be
///         protected from them.
/// Errors: those of the work.
void RunWhileWaiting(const std::function<void()> &work);
