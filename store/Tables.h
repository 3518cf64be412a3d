#pragma once

#include "store/modDBActi.h"
#include "store/modDBComp.h"
#include "store/modDBCust.h"
#include "store/modDBDivi.h"
#include "store/modDBEmpl.h"
#include "store/modDBEntr.h"
#include "store/modDBGOpts.h"
#include "store/modDBHrsS.h"
#include "store/modDBMain.h"
#include "store/modDBMult.h"
#include "store/modDBOpts.h"
#include "store/modDBProj.h"

/// The record store of one program folder with the access module of every table.
struct Tables
{
    explicit Tables(const QString &programFolder)
        : Main(Store, programFolder)
    {
    }

    RecordStore Store;
    modDBMain Main;
    modDBComp Company{Store};
    modDBGOpts GlobalOptions{Store};
    modDBOpts Options{Store};
    modDBEmpl Employee{Store};
    modDBMult Multiplier{Store};
    modDBDivi Divisions{Store};
    modDBCust Customers{Store};
    modDBProj Projects{Store};
    modDBActi Activities{Store};
    modDBEntr Entries{Store};
    modDBHrsS HoursSummary{Store};
};
