// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "CatalogueTranslator.h"

#include <KLocalizedString>

#include <QLocale>
#include <QRegularExpression>

#include <set>

namespace
{

//! Whether the application is translated into the user's language, and that is written from right to left.
bool isRightToLeft()
{
    for (const QString &language : KLocalizedString::languages()) {
        if (KLocalizedString::isApplicationTranslatedInto(language)) {
            return QLocale(language).textDirection() == Qt::RightToLeft;
        }
    }
    return false;
}

//! The number of placeholders, "%1" and so on. @return -1 if one is left out, which KI18n doesn't allow
int placeholdersOf(const QString &text)
{
    static const QRegularExpression s_placeholder(QStringLiteral("%(\\d{1,2})"));
    std::set<int> numbers;
    for (auto found = s_placeholder.globalMatch(text); found.hasNext();) {
        numbers.insert(found.next().captured(1).toInt());
    }
    const int count = int(numbers.size());
    return count == 0 || (*numbers.begin() == 1 && *numbers.rbegin() == count) ? count : -1;
}

} // namespace

QString CatalogueTranslator::translate(const char *context, const char *sourceText, const char *disambiguation,
                                       int n) const
{
    if (!sourceText || *sourceText == '\0') {
        return QString();
    }
    // Qt asks for the direction of the layout in this way.
    if (qstrcmp(context, "QGuiApplication") == 0 && qstrcmp(sourceText, "QT_LAYOUT_DIRECTION") == 0) {
        return isRightToLeft() ? QStringLiteral("RTL") : QString();
    }
    if (n >= 0 && disambiguation && qstrcmp(context, "Plural") == 0) {
        // If the catalogue has no translation, this is one of the English forms.
        return ki18np(disambiguation, sourceText).subs(n).toString();
    }
    const QString source = QString::fromUtf8(sourceText);
    const int placeholders = placeholdersOf(source);
    if (placeholders < 0) {
        return QString();
    }
    // Each placeholder is its own value, because KI18n reports one without a value.
    KLocalizedString text = ki18n(sourceText);
    for (int number = 1; number <= placeholders; ++number) {
        text = text.subs(QLatin1Char('%') + QString::number(number));
    }
    const QString translated = text.toString();
    return translated == source ? QString() : translated;
}
