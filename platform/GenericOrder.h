#pragma once

#include <QString>

#include <vector>

/// The place of each text among all of them in a grid's generic order, from 0; texts that are
/// equal in it share one.
///
/// Order: numbers, written as the system or as the program writes them, by value and before other
///        text; other text without regard to case, by its characters' codes.
std::vector<quint32> GenericRanks(const std::vector<QString> &texts);
