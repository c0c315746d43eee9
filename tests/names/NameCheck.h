// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "QmlScan.h"

#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

struct QMetaObject;

//! Checks the members that QML uses of untyped objects: names, numbers of arguments, writes and signal handlers. It
//! follows chains such as "panel.bar.bridge.status" through ids, properties and local constants to the objects that it
//! knows. Nothing is reported where the type remains unknown.
class NameCheck
{
public:
    struct Finding
    {
        QString file;
        int line = 0;
        QString name; //!< as the source has it, such as "panel.bar.bridge.status"
        QString problem; //!< such as "is not declared by AgentBridge"

        QString text() const;
    };

    //! @p path ends in ".qml" or ".js"; a QML file is known by its base name, as a type.
    void addFile(const QString &path, const QString &source);
    //! An object in QML's root context. Without a type it is a value that has no members.
    void addNativeObject(const QString &name, const QMetaObject *type);
    //! Declares that every variable or property of this name holds an object of a QML file's type.
    void addHandedProperty(const QString &name, const QString &qmlType);
    //! A type of Qt by its name in QML. Members of other types of Qt are not checked.
    void addBaseType(const QString &name, const QMetaObject *type);
    //! A type of Qt whose C++ class is private, with its properties.
    void addBaseType(const QString &name, const QStringList &properties);

    //! All findings in a file, by line.
    QVector<Finding> check(const QString &path) const;
    //! Members of the QML type @p fake that @p real lacks, or has as another kind or with other parameters. @p real is
    //! a QML type or the name of a native object.
    QVector<Finding> checkFake(const QString &fake, const QString &real, const QStringList &except = {}) const;

private:
    //! What is known of a value: an object of a QML file, or one of a C++ class, or nothing.
    struct Type
    {
        enum class Kind
        {
            Unknown,
            Qml,
            Native,
            Value, //!< has no members
        };
        Kind kind = Kind::Unknown;
        QString path; //!< of the QML file
        int object = 0; //!< in that file
        QString name; //!< of a native object or base type, for messages
        const QMetaObject *meta = nullptr;

        bool isKnown() const { return kind != Kind::Unknown; }
    };
    //! A member of a type, and what may be done with it.
    struct Use
    {
        bool isFound = false;
        bool isCertain = true; //!< if false, a base type may have what wasn't found
        QmlScan::Member::Kind kind = QmlScan::Member::Kind::Property;
        bool isWritable = true;
        QVector<QPair<int, int>> arguments; //!< minimum and maximum of each overload
        Type type;
    };
    using Findings = QVector<Finding>;

    const QmlScan::Document &document(const QString &path) const { return *m_files.find(path); }
    Type qmlType(const QString &name) const;
    Type baseType(const QString &name) const;
    QString nameOf(const Type &type) const;

    Use find(const Type &type, const QString &name, int depth = 0) const;
    Use findInQml(const Type &type, const QString &name, int depth) const;
    static Use findInMeta(const QMetaObject &meta, const QString &name);
    Use useOf(const QString &path, const QmlScan::Member &member, int depth) const;

    Type typeOfName(const QString &path, int token, int depth) const;
    Type typeOfExpression(const QString &path, const QmlScan::Range &range, int depth) const;
    Use useOfChain(const QString &path, const QmlScan::Range &range, int depth) const;

    void checkChain(const QString &path, int token, Findings *findings) const;
    void checkUse(const QString &path, const QmlScan::Range &chain, const Use &use, Findings *findings) const;
    void checkNativeCall(const QString &path, int token, Findings *findings) const;
    void checkTypeof(const QString &path, int token, Findings *findings) const;
    void checkConnections(const QString &path, const QmlScan::Object &object, Findings *findings) const;

    QMap<QString, QmlScan::Document> m_files;
    QHash<QString, QString> m_types; //!< paths by the name of their type
    QHash<QString, const QMetaObject *> m_natives;
    QHash<QString, QString> m_handed;
    QHash<QString, const QMetaObject *> m_baseTypes;
    QHash<QString, QStringList> m_baseProperties;
};
