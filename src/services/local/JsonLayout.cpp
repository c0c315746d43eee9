// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "JsonLayout.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

namespace
{

constexpr char s_indent[] = "    ";

//! A value as the text spells it.
struct Spelling
{
    QByteArray text; //!< of a number, string or literal; empty otherwise
    std::vector<QString> keys; //!< of an object, each once
    QHash<QString, std::size_t> places; //!< of the keys
    std::vector<Spelling> values; //!< of an object or array

    const Spelling *member(const QString &key) const
    {
        const auto place = places.constFind(key);
        return place == places.constEnd() ? nullptr : &values[*place];
    }
    const Spelling *element(int index) const
    {
        const auto position = static_cast<std::size_t>(index);
        return keys.empty() && position < values.size() ? &values[position] : nullptr;
    }
};

//! The value of a JSON text that isn't an object or array.
QJsonValue scalar(const QByteArray &text)
{
    return QJsonDocument::fromJson('[' + text + ']').array().at(0);
}

//! Whether a value is unchanged. QML, where the values come from, rounds integers beyond 2^53.
bool isSame(const QJsonValue &value, const QJsonValue &other)
{
    return value.isDouble() && other.isDouble() ? value.toDouble() == other.toDouble() : value == other;
}

//! Reads the spelling of a text that QJsonDocument has accepted, which also limits the depth.
class Reader
{
public:
    explicit Reader(const QByteArray &text)
        : m_text(text)
    {
    }

    //! Reads the whole text.
    Spelling readDocument()
    {
        // QJsonDocument accepts a byte order mark.
        if (m_text.startsWith("\xEF\xBB\xBF")) {
            m_position = 3;
        }
        return read();
    }

private:
    Spelling read()
    {
        skipWhitespace();
        switch (current()) {
        case '{':
            return readObject();
        case '[':
            return readArray();
        default:
            return {readScalar(), {}, {}, {}};
        }
    }

    char current() const { return m_position < m_text.size() ? m_text.at(m_position) : '\0'; }
    bool skip(char sign)
    {
        skipWhitespace();
        if (current() != sign) {
            return false;
        }
        ++m_position;
        return true;
    }
    void skipWhitespace()
    {
        while (m_position < m_text.size() && std::strchr(" \t\n\r", current())) {
            ++m_position;
        }
    }

    Spelling readObject()
    {
        Spelling object;
        for (++m_position; !skip('}') && m_position < m_text.size(); skip(',')) {
            skipWhitespace();
            const QString key = scalar(readScalar()).toString();
            skip(':');
            Spelling value = read();
            // Of a repeated key, the last value counts.
            if (const auto known = object.places.constFind(key); known != object.places.constEnd()) {
                object.values[*known] = std::move(value);
                continue;
            }
            object.places.insert(key, object.keys.size());
            object.keys.push_back(key);
            object.values.push_back(std::move(value));
        }
        return object;
    }

    Spelling readArray()
    {
        Spelling array;
        for (++m_position; !skip(']') && m_position < m_text.size(); skip(',')) {
            array.values.push_back(read());
        }
        return array;
    }

    QByteArray readScalar()
    {
        const int begin = m_position;
        if (current() == '"') {
            for (++m_position; m_position < m_text.size() && current() != '"'; ++m_position) {
                if (current() == '\\') {
                    ++m_position;
                }
            }
            ++m_position;
        } else {
            while (m_position < m_text.size() && !std::strchr(",:]} \t\n\r", current())) {
                ++m_position;
            }
        }
        return m_text.mid(begin, m_position - begin);
    }

    const QByteArray m_text;
    int m_position = 0;
};

class Writer
{
public:
    QByteArray write(const QJsonObject &object, const Spelling *spelling)
    {
        writeObject(object, spelling);
        return m_text + '\n';
    }

private:
    // Pieces are appended one by one: "+=" of a sum reallocates the whole text each time.
    void beginLine() { m_text.append('\n').append(QByteArray(s_indent).repeated(m_depth)); }

    void writeValue(const QJsonValue &value, const Spelling *spelling)
    {
        if (value.isObject()) {
            writeObject(value.toObject(), spelling);
        } else if (value.isArray()) {
            writeArray(value.toArray(), spelling);
        } else {
            m_text += spelled(value, spelling);
        }
    }

    static QByteArray spelled(const QJsonValue &value, const Spelling *spelling)
    {
        if (spelling && !spelling->text.isEmpty() && isSame(scalar(spelling->text), value)) {
            return spelling->text;
        }
        const QByteArray list = QJsonDocument(QJsonArray {value}).toJson(QJsonDocument::Compact);
        return list.mid(1, list.size() - 2);
    }

    void writeObject(const QJsonObject &object, const Spelling *spelling)
    {
        // By iteration, because QJsonObject doesn't find a key that begins with a byte order mark.
        QHash<QString, QJsonValue> members;
        std::vector<QString> added;
        for (auto member = object.begin(); member != object.end(); ++member) {
            const QString key = member.key();
            if (!members.contains(key) && !(spelling && spelling->member(key))) {
                added.push_back(key);
            }
            members.insert(key, member.value());
        }
        std::vector<QString> keys;
        if (spelling) {
            std::copy_if(spelling->keys.cbegin(), spelling->keys.cend(), std::back_inserter(keys),
                         [&members](const QString &key) { return members.contains(key); });
        }
        keys.insert(keys.end(), added.cbegin(), added.cend());
        m_text += '{';
        ++m_depth;
        for (std::size_t i = 0; i < keys.size(); ++i) {
            m_text += i > 0 ? "," : "";
            beginLine();
            m_text.append(spelled(keys[i], nullptr)).append(": ");
            writeValue(members.value(keys[i]), spelling ? spelling->member(keys[i]) : nullptr);
        }
        --m_depth;
        beginLine();
        m_text += '}';
    }

    void writeArray(const QJsonArray &array, const Spelling *spelling)
    {
        m_text += '[';
        ++m_depth;
        for (int i = 0; i < array.size(); ++i) {
            m_text += i > 0 ? "," : "";
            beginLine();
            writeValue(array.at(i), spelling ? spelling->element(i) : nullptr);
        }
        --m_depth;
        beginLine();
        m_text += ']';
    }

    QByteArray m_text;
    int m_depth = 0;
};

} // namespace

QByteArray JsonLayout::write(const QJsonObject &object, const QByteArray &original)
{
    std::optional<Spelling> spelling;
    if (QJsonDocument::fromJson(original).isObject()) {
        spelling = Reader(original).readDocument();
    }
    return Writer().write(object, spelling ? &*spelling : nullptr);
}
