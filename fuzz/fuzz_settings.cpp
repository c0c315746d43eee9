// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Fuzzes the application's settings file, loomra-kderc, which users and other processes edit.

#include "ConfigManager.h"
#include "Require.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QStandardPaths>

#include <algorithm>
#include <cstdint>
#include <memory>

namespace
{

//! In bytes.
constexpr int s_maxKeyLength = 64;

QString path()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QLatin1String("/loomra-kderc");
}

void replaceFile(const QByteArray &content)
{
    QFile file(path());
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), "the home can be written to");
    file.close();
    KSharedConfig::openConfig()->reparseConfiguration();
}

struct Values
{
    explicit Values(const ConfigManager &config)
        : apiKey(config.apiKey())
        , currentProject(config.currentProject())
        , recentProjects(config.recentProjects())
        , reminderEnabled(config.workspaceSuggestionReminderEnabled())
        , reminderMinutes(config.workspaceSuggestionReminderMinutes())
        , isTemplateEnabled(config.isWorkspaceTemplateSlugEnabled(QStringLiteral("meeting")))
    {
        require(reminderMinutes >= 1 && reminderMinutes <= 1440, "a reminder comes within a day");
    }
    bool operator==(const Values &) const = default;

    QString apiKey;
    QString currentProject;
    QStringList recentProjects;
    bool reminderEnabled;
    int reminderMinutes;
    bool isTemplateEnabled;
};

//! Whether the file says that its values must not be changed.
bool isLocked()
{
    const KConfigGroup general(KSharedConfig::openConfig(), "General");
    const QStringList keys = general.keyList();
    return general.isImmutable()
        || std::any_of(keys.begin(), keys.end(), [&](const QString &key) { return general.isEntryImmutable(key); });
}

//! Changes some values, saves all of them, and reads them from the disk.
void checkThatTheyAreKept(const QString &apiKey)
{
    const auto config = std::make_unique<ConfigManager>();
    const QString slug = QStringLiteral("meeting");
    config->setApiKey(apiKey);
    config->setWorkspaceTemplateSlugEnabled(slug, !config->isWorkspaceTemplateSlugEnabled(slug));
    const Values expected(*config);
    config->save();
    KSharedConfig::openConfig()->reparseConfiguration();
    config->load();
    require(Values(*config) == expected, "no setting is lost");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication s_application(*argc, *argv);
    QCoreApplication::setApplicationName(QStringLiteral("loomra-kde"));
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    QDir().mkpath(QFileInfo(path()).path());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray content(reinterpret_cast<const char *>(data), static_cast<int>(size));
    replaceFile(content);
    {
        ConfigManager config;
        const Values loaded(config);
        config.load();
        require(Values(config) == loaded, "loading changes nothing");
    }
    if (!isLocked()) {
        checkThatTheyAreKept(QString::fromUtf8(content.left(s_maxKeyLength)));
    }
    return 0;
}
