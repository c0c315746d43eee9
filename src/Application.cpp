// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Application.h"

#include "DataDirectories.h"
#include "LoomraSDK.h"
#include "NativeObjects.h"

#include <KLocalizedString>
#include <KSignalHandler>

#include <QIcon>
#include <QLibrary>
#include <QQuickWindow>

#include <csignal>
#include <functional>
#include <memory>
#include <vector>

namespace
{

//! Plasma's QML plugins pull in this library on the QML loader's thread, where its static objects then warn of a parent
//! in another thread. Loaded here first, on the main thread, it is silent. Where it is missing nothing is lost.
void loadXmlGuiOnMainThread()
{
    QLibrary(QStringLiteral("KF5XmlGui"), 5).load();
}

//! The end of the session and the interrupt key are a quit like any other: a child isn't left behind.
void quitOnSignals()
{
    KSignalHandler *signals = KSignalHandler::self();
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        signals->watchSignal(number);
    }
    QObject::connect(signals, &KSignalHandler::signalReceived, qApp, &QCoreApplication::quit);
}

//! Qt Quick gathers small images in one texture, by itself as large as a window over the whole screen: 8 MiB for a
//! dozen icons. It is told of a smaller one by the environment, which is as it was before when this ends, so that no
//! child process gets it.
class SmallTextureAtlas
{
public:
    SmallTextureAtlas()
    {
        for (const char *side : {"QSG_ATLAS_WIDTH", "QSG_ATLAS_HEIGHT"}) {
            if (!qEnvironmentVariableIsSet(side)) {
                qputenv(side, "512"); // pixels
                m_set.push_back(side);
            }
        }
    }
    ~SmallTextureAtlas()
    {
        for (const char *side : m_set) {
            qunsetenv(side);
        }
    }
    Q_DISABLE_COPY_MOVE(SmallTextureAtlas)

private:
    std::vector<const char *> m_set;
};

//! Looking through the icon themes takes some milliseconds, and a window asks for its icon before it is shown.
void setWindowIcon()
{
    QGuiApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("loomra-kde")));
}

//! Calls a function when the window's first frame is on the screen. Where another one follows very soon, once more.
void afterFirstFrame(const QQuickWindow *window, const std::function<void()> &function)
{
    auto *first = new QObject(QGuiApplication::instance());
    // Queued, as frames are swapped on another thread where there is a render thread.
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
    // Attached files are read by XMLHttpRequest, which is closed to local files without this.
    qputenv("QML_XHR_ALLOW_FILE_READ", "1");
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
    // ChatModel and ProjectModel are registered for "org.kde.loomra" 1.0 here when they join.
    m_engine.addImportPath(QStringLiteral("qrc:/"));
    LoomraSDK *sdk = NativeObjects::create(&m_application, &m_engine);

    m_arguments = QCoreApplication::arguments();
    const LaunchMode mode = launchModeOf(m_arguments);
    m_rootFile = rootFileOf(mode);
    if (mode == LaunchMode::OmniBar) {
        loadXmlGuiOnMainThread();
    }
    quitOnSignals(); // before there is a child
    // The OmniBar finds its bridge running as a service; the voice test needs none; the others own theirs.
    if (mode != LaunchMode::VoiceTest) {
        sdk->setConnectOnly(mode == LaunchMode::OmniBar);
        sdk->initialize();
    }
    load();
    QObject::connect(&m_application, &QCoreApplication::aboutToQuit, sdk, [sdk] { sdk->stopBridgeProcess(true); });
}

void Application::load()
{
    // Queued, as the signal comes from within load(), when no event loop runs yet that exit() could end.
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
        afterFirstFrame(window, [atlas] { setWindowIcon(); });
    }
}

int Application::exec()
{
    return m_application.exec();
}
