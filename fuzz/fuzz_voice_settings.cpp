// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Fuzzes the store of the voice settings, which users edit. Numbers are taken unchecked, so what uses them must do with
// any value.

#include "Endpointer.h"
#include "Require.h"
#include "SttBackends.h"
#include "VoiceSettings.h"
#include "VoiceSettingsTable.h"

#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QSettings>

#include <cstdint>

namespace
{

//! Each input has a store with a name of its own, because QSettings would take the file of the last input from its
//! cache if size and time are the same.
class Store
{
public:
    explicit Store(const QByteArray &content)
    {
        static quint64 s_number = 0;
        QCoreApplication::setApplicationName(QString::number(++s_number));
        m_path = QSettings().fileName();
        write(content);
    }
    ~Store() { QFile::remove(m_path); }
    Q_DISABLE_COPY_MOVE(Store)

    QByteArray content() const
    {
        QFile file(m_path);
        require(file.open(QIODevice::ReadOnly), "the store stays");
        return file.readAll();
    }

private:
    void write(const QByteArray &content) const
    {
        QFile file(m_path);
        require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), "the home can be written to");
    }

    QString m_path;
};

void checkModes(const VoiceSettings &settings)
{
    const QString input = settings.sttInputMode;
    require(input == SttInputMode::Live || input == SttInputMode::Batch, "there are two input modes");
    const QString submit = settings.voiceSubmitMode;
    require(submit == VoiceSubmitMode::Auto || submit == VoiceSubmitMode::Manual, "there are two submit modes");
    const QString backend = SttBackends::normalized(settings.sttBackend);
    require(!backend.isEmpty() && SttBackends::normalized(backend) == backend, "any text stands for an engine");
}

//! A capture with speech and then silence ends, whatever the timeout is.
void checkCapture(int silenceTimeoutMs)
{
    Endpointer endpointer {std::chrono::milliseconds(silenceTimeoutMs)};
    require(endpointer.take(1) == Endpointer::Decision::Store, "speech is kept");
    int silence = 0;
    while (!endpointer.isAtLimit()) {
        ++silence;
        if (endpointer.take(0) == Endpointer::Decision::StoreAndEnd) {
            break;
        }
    }
    const int expected = silenceTimeoutMs < 100 ? 1 : qMin(silenceTimeoutMs / 50, Endpointer::MaximumChunks - 1);
    require(silence == expected, "a capture ends after the timeout or at the limit");
}

template<typename T>
bool isSame(const VoiceSettings &a, const VoiceSettings &b, const VoiceSetting<T> &setting)
{
    return a.*setting.member == b.*setting.member;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication s_application(*argc, *argv);
    QCoreApplication::setOrganizationName(QStringLiteral("kde.org"));
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    { // makes the directory
        QSettings store;
        store.setValue(QStringLiteral("a"), 1);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray content(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const Store store(content);
    checkModes(VoiceSettings::read());
    // QSettings parses a section when one of its keys is read. Keys that are in another section in the way of
    // QSettings, as "voice\key", are found only then.
    QSettings().allKeys();
    const VoiceSettings settings = VoiceSettings::read();
    require(store.content() == content, "reading doesn't write");
    checkModes(settings);
    checkCapture(settings.silenceTimeoutMs);

    VoiceSettingsTable::forEach([&](const auto &setting) {
        const auto normalized = setting.normalized(settings.*setting.member);
        require(setting.normalized(normalized) == normalized, "a value that is in range stays");
    });
    // The only setting that is an arbitrary text.
    settings.write(VoiceSettingsTable::sttBackend);
    const VoiceSettings again = VoiceSettings::read();
    VoiceSettingsTable::forEach(
        [&](const auto &setting) { require(isSame(settings, again, setting), "a setting is kept"); });
    return 0;
}
