// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ToolConfig.h"

#include "JsonLayout.h"
#include "PrivateFile.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QMutexLocker>
#include <QStandardPaths>

namespace
{

const QString s_schemaKey = QStringLiteral("$schema");
const QString s_schema = QStringLiteral("https://loomra.example/config.schema.json");

//! Opening a FIFO would block until somebody uses its other end.
bool isSpecial(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() && !file.isFile();
}

} // namespace

ToolConfig::ToolConfig(std::function<void()> changed)
    : m_changed(std::move(changed))
{
    const File file = read();
    m_config = file.config;
    m_text = file.text;
    m_isValid = file.isValid;
}

QString ToolConfig::path()
{
    const QString directory =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QLatin1String("/loomra");
    QDir().mkpath(directory);
    return directory + QLatin1String("/loomra.json");
}

bool ToolConfig::readText(const QString &path, QByteArray &text)
{
    QFile file(path);
    if (isSpecial(path) || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return false;
    }
    text = file.readAll();
    return true;
}

ToolConfig::File ToolConfig::read()
{
    const QString path = ToolConfig::path();
    if (!QFileInfo::exists(path)) {
        return {{{s_schemaKey, s_schema}}, {}, true};
    }
    QByteArray text;
    if (!readText(path, text)) {
        qWarning() << "Failed to open Loomra config file:" << path;
        return {{}, {}, false};
    }
    QJsonParseError error {};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError) {
        qWarning() << "Failed to parse Loomra config JSON:" << error.errorString();
        return {{}, text, false};
    }
    return {document.object(), text, document.isObject()};
}

QJsonObject ToolConfig::load()
{
    const File file = read();
    const QMutexLocker locker(&m_mutex);
    m_config = file.config;
    m_text = file.text;
    m_isValid = file.isValid;
    m_isCutShort = false;
    qDebug() << "getLoomraConfig: Loaded config with" << m_config.size() << "top-level keys";
    qDebug() << "getLoomraConfig: agent keys:" << m_config.value(QLatin1String("agent")).toObject().keys();
    return m_config;
}

void ToolConfig::set(const QJsonObject &config)
{
    const QMutexLocker locker(&m_mutex);
    m_config = config;
    m_changed();
}

QJsonObject ToolConfig::section(const QString &key) const
{
    const QMutexLocker locker(&m_mutex);
    return m_config.value(key).toObject();
}

void ToolConfig::setSection(const QString &key, const QJsonObject &section)
{
    const QMutexLocker locker(&m_mutex);
    m_config.insert(key, section);
    m_changed();
}

bool ToolConfig::save()
{
    const QMutexLocker locker(&m_mutex);
    const QString path = ToolConfig::path();
    qDebug() << "Saving Loomra config to:" << path;
    const QByteArray text = JsonLayout::write(m_config, m_text);
    QFile file(path);
    const auto write = [&] {
        // A new file is private, because providers can have keys.
        constexpr auto existing = PrivateFile::Existing::KeepsItsMode;
        if (isSpecial(path) || !PrivateFile::open(file, QIODevice::WriteOnly | QIODevice::Text, existing)) {
            qWarning() << "Failed to open Loomra config file for writing:" << path;
            return false;
        }
        const qint64 written = file.write(text);
        // What is still in the buffer counts only if the disk takes it.
        if (written != text.size() || !file.flush()) {
            qWarning() << "Failed to write all data to Loomra config file. Written:" << written
                       << "Expected:" << text.size();
            return false;
        }
        qDebug() << "Successfully wrote" << written << "bytes to config file:" << path;
        return true;
    };
    if (!write()) {
        qWarning() << "Failed to save Loomra config to:" << path;
        // What is left there is no change by somebody else. The old text still has the layout.
        m_isCutShort = file.openMode() != QIODevice::NotOpen;
        return false;
    }
    m_text = text;
    m_isValid = true;
    m_isCutShort = false;
    qDebug() << "Loomra config saved successfully";
    m_changed();
    return true;
}

QString ToolConfig::asString() const
{
    const QMutexLocker locker(&m_mutex);
    return QString::fromUtf8(JsonLayout::write(m_config, m_text));
}

QString ToolConfig::schema()
{
    return s_schema;
}

bool ToolConfig::isValid() const
{
    const QMutexLocker locker(&m_mutex);
    return m_isValid;
}

bool ToolConfig::isChangedOnDisk() const
{
    const QMutexLocker locker(&m_mutex);
    QByteArray text;
    readText(path(), text);
    return text != m_text && !m_isCutShort;
}
