// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "TinyModel.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>
#include <qfloat16.h>

#include <cstring>
#include <initializer_list>
#include <vector>

namespace
{

// The parameters of an English model, except width and depth.
constexpr int s_vocabulary = 51864;
constexpr int s_audioContext = 1500;
constexpr int s_textContext = 448;
constexpr int s_width = 32;
constexpr int s_heads = 1;
constexpr int s_layers = 1;
constexpr int s_mels = 80;
constexpr int s_frequencies = 201;

constexpr int s_endOfText = 50256;
constexpr int s_firstTimestamp = 50363;
//! Index 0 is a space, which the library looks up.
constexpr int s_firstWord = 1;

// The position outweighs every token, and selects the token with a value in its dimension.
constexpr float s_positionWeight = 1000;
constexpr float s_tokenWeight = 20;

enum class Type : qint32
{
    Float32 = 0,
    Float16 = 1,
};

class File
{
public:
    void number(qint32 value)
    {
        char bytes[sizeof value];
        qToLittleEndian(value, bytes);
        m_bytes.append(bytes, sizeof bytes);
    }
    void word(const QByteArray &text)
    {
        number(text.size());
        m_bytes.append(text);
    }
    void zeros(int bytes) { m_bytes.append(bytes, '\0'); }

    //! Adds a tensor of zeros, except for the given values.
    //! @param dimensions the fastest-changing one first
    void tensor(const QByteArray &name, Type type, std::initializer_list<qint32> dimensions,
                const std::vector<std::pair<int, float>> &values = {})
    {
        number(static_cast<qint32>(dimensions.size()));
        number(name.size());
        number(static_cast<qint32>(type));
        int count = 1;
        for (const qint32 dimension : dimensions) {
            number(dimension);
            count *= dimension;
        }
        m_bytes.append(name);
        const int start = m_bytes.size();
        const int size = type == Type::Float32 ? sizeof(float) : sizeof(qfloat16);
        zeros(count * size);
        for (const auto &[index, value] : values) {
            char *target = m_bytes.data() + start + index * size;
            if (type == Type::Float32) {
                qToLittleEndian(value, target);
            } else {
                const qfloat16 half(value);
                std::memcpy(target, &half, sizeof half);
            }
        }
    }
    //! Adds weight and bias of a normalization.
    void norm(const QByteArray &name, const std::vector<std::pair<int, float>> &weight = {})
    {
        tensor(name + ".weight", Type::Float32, {s_width}, weight);
        tensor(name + ".bias", Type::Float32, {s_width});
    }
    void linear(const QByteArray &name, int inputs, int outputs)
    {
        tensor(name + ".weight", Type::Float16, {inputs, outputs});
        tensor(name + ".bias", Type::Float32, {outputs});
    }

    QByteArray bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

void addAttention(File &file, const QByteArray &name)
{
    file.norm(name + "_ln");
    file.linear(name + ".query", s_width, s_width);
    file.tensor(name + ".key.weight", Type::Float16, {s_width, s_width}); // keys have no bias
    file.linear(name + ".value", s_width, s_width);
    file.linear(name + ".out", s_width, s_width);
}

void addLayer(File &file, const QByteArray &name)
{
    addAttention(file, name + ".attn");
    file.norm(name + ".mlp_ln");
    file.linear(name + ".mlp.0", s_width, 4 * s_width);
    file.linear(name + ".mlp.2", 4 * s_width, s_width);
}

void addEncoder(File &file)
{
    file.tensor("encoder.positional_embedding", Type::Float32, {s_width, s_audioContext});
    file.tensor("encoder.conv1.weight", Type::Float16, {3, s_mels, s_width});
    file.tensor("encoder.conv1.bias", Type::Float32, {1, s_width});
    file.tensor("encoder.conv2.weight", Type::Float16, {3, s_width, s_width});
    file.tensor("encoder.conv2.bias", Type::Float32, {1, s_width});
    file.norm("encoder.ln_post");
    addLayer(file, "encoder.blocks.0");
}

//! Position p always returns token p of the list, regardless of the audio.
void addDecoder(File &file, const std::vector<int> &tokens)
{
    std::vector<std::pair<int, float>> positions;
    std::vector<std::pair<int, float>> embedding;
    for (int p = 0; p < static_cast<int>(tokens.size()); ++p) {
        positions.emplace_back(p * s_width + p, s_positionWeight);
        embedding.emplace_back(tokens.at(static_cast<std::size_t>(p)) * s_width + p, s_tokenWeight);
    }
    std::vector<std::pair<int, float>> ones;
    for (int i = 0; i < s_width; ++i) {
        ones.emplace_back(i, 1.0F);
    }
    file.tensor("decoder.positional_embedding", Type::Float32, {s_width, s_textContext}, positions);
    file.tensor("decoder.token_embedding.weight", Type::Float16, {s_width, s_vocabulary}, embedding);
    file.norm("decoder.ln", ones);
    addLayer(file, "decoder.blocks.0");
    addAttention(file, "decoder.blocks.0.cross_attn");
}

void addHead(File &file, const QList<QByteArray> &words)
{
    file.number(0x67676d6c);
    for (const qint32 parameter : {s_vocabulary, s_audioContext, s_width, s_heads, s_layers, s_textContext, s_width,
                                   s_heads, s_layers, s_mels, static_cast<int>(Type::Float16)}) {
        file.number(parameter);
    }
    file.number(s_mels);
    file.number(s_frequencies);
    file.zeros(s_mels * s_frequencies * static_cast<int>(sizeof(float)));
    // The library generates words for the rest of the vocabulary.
    file.number(s_firstWord + words.size());
    file.word(" ");
    for (const QByteArray &word : words) {
        file.word(word);
    }
}

QByteArray model(const QList<QByteArray> &words, const std::vector<int> &tokens)
{
    File file;
    addHead(file, words);
    addEncoder(file);
    addDecoder(file, tokens);
    return file.bytes();
}

} // namespace

QByteArray TinyModel::saying(const QList<QByteArray> &words)
{
    std::vector<int> tokens;
    for (int i = 0; i < words.size(); ++i) {
        tokens.push_back(s_firstWord + i);
    }
    tokens.push_back(s_endOfText);
    return model(words, tokens);
}

QByteArray TinyModel::silent()
{
    return model({}, {s_firstTimestamp, s_endOfText});
}

int TinyModel::headSize(const QList<QByteArray> &words)
{
    File file;
    addHead(file, words);
    return file.bytes().size();
}

QString TinyModel::write(const QString &path, const QByteArray &model)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(model) != model.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
    return path;
}
