// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Prints what the figures depend on, as lines "NAME<tab>VALUE", for bench/page.js.

#include <KCoreAddons>

#include <QDateTime>
#include <QFile>
#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QSysInfo>
#include <QThread>

#include <cstdio>

namespace
{

//! The value of the first line "NAME: VALUE" of a file in /proc.
QByteArray valueIn(const char *file, const char *name)
{
    QFile source(QString::fromLatin1(file));
    if (source.open(QIODevice::ReadOnly)) {
        const QList<QByteArray> lines = source.readAll().split('\n');
        for (const QByteArray &line : lines) {
            if (line.startsWith(name)) {
                return line.mid(line.indexOf(':') + 1).simplified();
            }
        }
    }
    return QByteArrayLiteral("unknown");
}

QByteArray openGlRenderer()
{
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    if (!context.create() || !context.makeCurrent(&surface)) {
        return QByteArrayLiteral("none");
    }
    return reinterpret_cast<const char *>(context.functions()->glGetString(GL_RENDERER));
}

void print(const char *name, const QByteArray &value)
{
    std::printf("%s\t%s\n", name, value.constData());
}

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    print("Date", QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyy-MM-dd hh:mm")).toUtf8() + " UTC");
    print("Processor",
          valueIn("/proc/cpuinfo", "model name") + ", " + QByteArray::number(QThread::idealThreadCount()) + " threads");
    print("Memory", valueIn("/proc/meminfo", "MemTotal"));
    print("System", QSysInfo::prettyProductName().toUtf8() + ", kernel " + QSysInfo::kernelVersion().toUtf8());
    print("Qt", qVersion());
    print("KDE Frameworks", KCoreAddons::versionString().toUtf8());
    print("OpenGL renderer", openGlRenderer());
}
