#pragma once

#include "tests/store/ThreeFields.h"

#include <random>
#include <vector>

/// What the saving program does, worked out from one number alone: the test that ends it then knows
/// every state that the file may be in.

struct SaveStep
{
    enum class Kind
    {
        Add,
        Change,
        Delete
    };

    Kind What = Kind::Add;
    qint32 Position = 0; // of the record changed or deleted
    ThreeFields Record;
};

/// The steps of the next save, which become durable together; mostly one. `count` is the number
/// of records before it.
std::vector<SaveStep> NextSave(std::mt19937 &random, qint32 count);

void Apply(const std::vector<SaveStep> &steps, std::vector<ThreeFields> &records);
/// On an open table; returns when it is on the disk.
void Apply(const std::vector<SaveStep> &steps, RecordStore &store, RecordStore::Handle handle);
