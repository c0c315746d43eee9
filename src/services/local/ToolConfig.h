// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QMutex>
#include <QString>

#include <functional>

//! The configuration file of the agent tool, kept as a whole in memory. Sections that nobody here knows stay as they
//! are. The file isn't watched.
class ToolConfig
{
public:
    //! Loads the file.
    //! @param changed called after each change of the object except by load(), with the mutex held: it must not call
    //! this object
    explicit ToolConfig(std::function<void()> changed);

    //! The path of the file. Creates its directory.
    static QString path();

    //! Reads the file again; changes that were not saved are lost. Without a file there is a default; a file that can't
    //! be read or parsed gives an empty object, with a warning.
    QJsonObject load();
    void set(const QJsonObject &config);

    //! A section; empty if there is none or it is no object.
    QJsonObject section(const QString &key) const;
    //! Replaces a whole section.
    void setSection(const QString &key, const QJsonObject &section);

    //! Writes the file in place, so that its mode and a symbolic link to it stay. Key order and number formats of the
    //! file as it was read are kept. Intentional: no temporary file, so a full disk may cut the file short.
    //! @return false, with a warning, if that fails
    bool save();

    //! The content that save() would write.
    QString asString() const;

    //! The address of the schema in the default configuration.
    static QString schema();
    //! Whether the file, as it was read last, was a readable JSON object, or there was none.
    bool isValid() const;
    //! Whether the file has other content than it had when it was last read or written here. Reads the file.
    bool isChangedOnDisk() const;

private:
    struct File
    {
        QJsonObject config;
        QByteArray text; //!< whatever it is; empty if there is no file or it can't be read
        bool isValid = true;
    };
    //! Returns whether the file could be read.
    static bool readText(const QString &path, QByteArray &text);
    static File read();

    const std::function<void()> m_changed;
    mutable QMutex m_mutex;
    QJsonObject m_config;
    //! The text that was last read or written.
    QByteArray m_text;
    bool m_isValid = true;
    //! A failed save() has left a part of the text in the file.
    bool m_isCutShort = false;
};
