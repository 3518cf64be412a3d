#pragma once

/// How long a test waits for what must come: far longer than it ever takes, on a busy machine and
/// under the sanitizers, too. No test measures time against it.
constexpr int DeadlineMilliseconds = 120'000;
