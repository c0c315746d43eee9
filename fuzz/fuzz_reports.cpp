// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Fuzzes what the windows make of JSON from outside: the bridge's reports and lists, and the agent tool's
// configuration. As a text, the input is also an attached file. The rules are in reports.js.

#include "Scripts.h"

#include <QCoreApplication>

#include <cstdint>

namespace
{

//! What the libraries use of QML.
const char s_qml[] = "var Qt = {"
                     "    lighter: color => /^(#[0-9a-f]{6}|red)$/.test(color) ? color : null,"
                     "    formatDate: date => date.toISOString(),"
                     "    locale: () => undefined,"
                     "    DefaultLocaleShortDate: 0"
                     "};";

// Not deleted at exit, because Qt's own statics are destroyed before.
QCoreApplication *s_application = nullptr;
Scripts *s_scripts = nullptr;
QJSValue *s_reports = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    s_application = new QCoreApplication(*argc, *argv);
    s_scripts = new Scripts;
    s_scripts->engine().evaluate(QLatin1String(s_qml));
    s_reports = new QJSValue(s_scripts->library(QStringLiteral("fuzz/reports.js")));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Scripts::call(*s_reports, "check",
                  {QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size))});
    return 0;
}
