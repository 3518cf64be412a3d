#pragma once

#include <QtGlobal>

/// Bytes that the process has taken from the heap and not given back.
qint64 HeldBytes();
