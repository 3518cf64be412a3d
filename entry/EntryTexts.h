#pragma once

#include <QString>

#include <vector>

/// The texts that the entry list shows for codes, each kept once. They only grow: what a list has
/// been given stays.
struct EntryTexts
{
    std::vector<QString> Customers;
    std::vector<QString> Projects;
    std::vector<QString> Activities;
};
