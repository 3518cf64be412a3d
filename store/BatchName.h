#pragma once

#include <QString>

/// The name of a batch, under which entries are delivered to the accounting system:
/// "yyyyMMdd-HHmmss- <employee>-<8 hexadecimal digits>", its time in UTC. The note of an Entries
/// database has the name under which its entries come next, so that every copy of the database
/// names their batch.

/// A name that no computer has used.
QString NewBatchName(const QString &employeeNumber);
/// Whether the text can be a batch's name; it is then safe as a part of a file's.
bool IsBatchName(const QString &text);
