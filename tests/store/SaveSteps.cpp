#include "tests/store/SaveSteps.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace {

ThreeFields RandomRecord(std::mt19937 &random)
{
    // Texts of several pages make saves of several pages, which can be torn.
    const auto filler = random() % 3 == 0 ? random() % 60000 : random() % 40;
    return {QString::number(random()) + QString(static_cast<qsizetype>(filler), u'x'),
        WallClock(QDate(2024, 1, 1).addDays(static_cast<qint64>(random() % 366))),
        Currency::FromScaled(static_cast<qint64>(random()))};
}

} // namespace

std::vector<SaveStep> NextSave(std::mt19937 &random, qint32 count)
{
    std::vector<SaveStep> steps(random() % 8 == 0 ? random() % 5 + 2 : 1);
    for (SaveStep &step : steps) {
        const auto choice = random() % 3;
        step.What = count == 0 || (choice == 0 && count < 60) ? SaveStep::Kind::Add
            : choice == 1                                     ? SaveStep::Kind::Change
                                                              : SaveStep::Kind::Delete;
        if (step.What != SaveStep::Kind::Add)
            step.Position = static_cast<qint32>(random() % static_cast<size_t>(count));
        if (step.What != SaveStep::Kind::Delete)
            step.Record = RandomRecord(random);
        count += step.What == SaveStep::Kind::Add ? 1 : 0;
        count -= step.What == SaveStep::Kind::Delete ? 1 : 0;
    }
    return steps;
}

void Apply(const std::vector<SaveStep> &steps, std::vector<ThreeFields> &records)
{
    for (const SaveStep &step : steps) {
        switch (step.What) {
        case SaveStep::Kind::Add:
            records.push_back(step.Record);
            break;
        case SaveStep::Kind::Change:
            records[static_cast<size_t>(step.Position)] = step.Record;
            break;
        case SaveStep::Kind::Delete:
            records.erase(records.begin() + step.Position);
            break;
        }
    }
}

void Apply(const std::vector<SaveStep> &steps, RecordStore &store, RecordStore::Handle handle)
{
    std::unique_ptr<RecordStore::Batch> batch;
    if (steps.size() > 1)
        batch = std::make_unique<RecordStore::Batch>(store, handle);
    for (const SaveStep &step : steps) {
        if (step.What == SaveStep::Kind::Add)
            store.AddRecord(handle);
        else
            store.MoveToPosition(handle, step.Position);
        if (step.What == SaveStep::Kind::Delete) {
            store.DeleteRecord(handle, 2);
            continue;
        }
        if (step.What == SaveStep::Kind::Change)
            store.EditRecord(handle);
        store.WriteRecord(handle, step.Record);
        store.UpdateRecord(handle);
    }
    if (batch)
        batch->Commit();
}
