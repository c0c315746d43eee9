// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Application.h"

#include "AccessibilityBus.h"
#include "ConfigManager.h"
#include "DataDirectories.h"
#include "Environment.h"
#include "LoomraSDK.h"
#include "NativeObjects.h"

#include <KLocalizedString>
#include <KSignalHandler>

#include <QIcon>
#include <QLibrary>
#include <QPointer>
#include <QQuickWindow>
#include <QSettings>
#include <QThread>

#include <csignal>
#include <cstdlib>
#include <functional>
#include <memory>

#include <unistd.h>

namespace
{

//! Plasma's QML plugins load this library on the QML loader's thread, where its static objects warn about a parent in
//! another thread. Loading it on the main thread first avoids the warning. It may be missing.
void loadXmlGuiOnMainThread()
{
    QLibrary(QStringLiteral("KF5XmlGui"), 5).load();
}

//! Quits in the regular way on SIGINT, SIGTERM and SIGHUP, so that no child process is left behind.
void quitOnSignals()
{
    KSignalHandler *signals = KSignalHandler::self();
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        signals->watchSignal(number);
    }
    QObject::connect(signals, &KSignalHandler::signalReceived, qApp, &QCoreApplication::quit);
}

// Null after a regular end, which has destroyed both.
QPointer<LoomraSDK> s_sdkToStop;
QPointer<ConfigManager> s_configToSave;

//! Saves the settings and stops the bridge when the process ends without returning to main(): Qt, or Xlib, calls exit()
//! if the display is lost.
void endInOrder(int status, void * /*unused*/)
{
    if (!s_sdkToStop) {
        return;
    }
    // A render thread may lose the display first. It must not use the objects of the main thread, which still runs.
    if (QThread::currentThread() == s_sdkToStop->thread()) {
        s_configToSave->save();
        QSettings().sync();
        s_sdkToStop->stopBridgeProcess(true);
    }
    // Other threads still run, those of the speech engines and of graphics drivers: they would crash while exit()
    // destroys what they use.
    ::_exit(status);
}

//! To be called on the main thread, late, because what is created first is destroyed last.
void keepOrderOnExit(LoomraSDK *sdk, ConfigManager *config)
{
    s_sdkToStop = sdk;
    s_configToSave = config;
    ::on_exit(endInOrder, nullptr);
}

//! Qt Quick gathers small images in one texture, by default as large as a full-screen window: 8 MiB for a dozen icons.
//! This sets a smaller size, in pixels, while it lives.
struct SmallTextureAtlas
{
    const Environment::TemporaryVariable width {"QSG_ATLAS_WIDTH", "512"};
    const Environment::TemporaryVariable height {"QSG_ATLAS_HEIGHT", "512"};
};

//! Called after the first frame, because searching the icon themes takes some milliseconds and a window reads its icon
//! before it is shown.
void setWindowIcon()
{
    QGuiApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("loomra-kde")));
}

//! Calls a function when the window's first frame is on the screen, and possibly once more if the next frame follows
//! immediately.
void afterFirstFrame(const QQuickWindow *window, const std::function<void()> &function)
{
    auto *first = new QObject(QGuiApplication::instance());
    // Queued, because with a render thread frames are swapped on that thread.
    QObject::connect(
        window, &QQuickWindow::frameSwapped, first,
        [first, function] {
            first->deleteLater();
            function();
        },
        Qt::QueuedConnection);
}

} // namespace

void Application::prepareEnvironment()
{
    // Attached files are read through XMLHttpRequest, which by default warns about local files; Qt 6 refuses them.
    Environment::set("QML_XHR_ALLOW_FILE_READ", "1");
}

KAboutData Application::describe()
{
    KLocalizedString::setApplicationDomain("loomra-kde");

    KAboutData about(QStringLiteral("loomra-kde"), QStringLiteral("Loomra KDE"), QStringLiteral(TOVICTL_VERSION),
                     QStringLiteral("A KDE user interface of the loomra agent tool"), KAboutLicense::GPL);
    KAboutData::setApplicationData(about);
    return about;
}

Application::Application(int &argc, char **argv)
    : m_application(argc, argv)
    , m_about((preferDataBesideExecutable(), describe()))
{
    AccessibilityBus accessibilityBus;
    QCoreApplication::installTranslator(&m_translator);
    m_engine.addImportPath(QStringLiteral("qrc:/"));
    LoomraSDK *sdk = NativeObjects::create(&m_application, &m_engine);

    m_arguments = QCoreApplication::arguments();
    const LaunchMode mode = launchModeOf(m_arguments);
    m_rootFile = rootFileOf(mode);
    if (mode == LaunchMode::OmniBar) {
        loadXmlGuiOnMainThread();
    }
    quitOnSignals(); // before a child process is started
    // The OmniBar uses a bridge that runs as a service, the voice test needs none, the other modes start their own.
    if (mode != LaunchMode::VoiceTest) {
        sdk->setConnectOnly(mode == LaunchMode::OmniBar);
        sdk->initialize();
    }
    accessibilityBus.announce();
    load();
    QObject::connect(&m_application, &QCoreApplication::aboutToQuit, sdk, [sdk] { sdk->stopBridgeProcess(true); });
    keepOrderOnExit(sdk, m_application.findChild<ConfigManager *>());
}

void Application::load()
{
    // Queued, because the signal is emitted within load(), before the event loop that exit() ends is running.
    QObject::connect(
        &m_engine, &QQmlApplicationEngine::objectCreated, &m_application,
        [this](const QObject *object, const QUrl &url) {
            if (!object && url == m_rootFile) {
                QCoreApplication::exit(-1);
            }
        },
        Qt::QueuedConnection);
    const auto atlas = std::make_shared<SmallTextureAtlas>();
    m_engine.load(m_rootFile);
    if (const auto *window = qobject_cast<QQuickWindow *>(m_engine.rootObjects().value(0))) {
        afterFirstFrame(window, [atlas] {
            setWindowIcon();
            // Once more, because graphics drivers, which are loaded by now, would be destroyed first.
            ::on_exit(endInOrder, nullptr);
        });
    }
}

int Application::exec()
{
    const int exitCode = m_application.exec();
    // Values that QSettings couldn't write, because the disk was full for a while, are written only on request.
    QSettings().sync();
    return exitCode;
}
