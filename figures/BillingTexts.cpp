#include "figures/BillingTexts.h"

using namespace Qt::StringLiterals;

namespace {

/// The text of a code that counts from "1".
QString TextOf(const QString &code, const QStringList &texts)
{
    return code.size() == 1 ? texts.value(code.at(0).unicode() - u'1') : QString();
}

} // namespace

QStringList BillingStatusTexts()
{
    return {u"Billable"_s, u"No Charge"_s, u"Do Not Bill"_s};
}

QString BillingStatusText(const QString &code)
{
    return TextOf(code, BillingStatusTexts());
}

QString BillingStatusCode(const QString &text)
{
    const QStringList texts = BillingStatusTexts();
    return text == texts[0] ? u"1"_s : text == texts[1] ? u"2"_s : u"3"_s;
}

QStringList BillingOptionTexts(const OptionsRecord &options)
{
    return {u"Application"_s, options.Employee_Term, u"Division"_s, options.Customer_Term,
        options.Project_Term, options.Activity_Term};
}

QString BillingOptionText(const QString &code, const OptionsRecord &options)
{
    return TextOf(code, BillingOptionTexts(options));
}

QString BillingOptionCode(const QString &text, const OptionsRecord &options)
{
    const qsizetype index = BillingOptionTexts(options).indexOf(text);
    return index < 0 ? QString() : QString::number(index + 1);
}
