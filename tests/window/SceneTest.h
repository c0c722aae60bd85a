#pragma once

#include "app/ConfigUtil.h"
#include "app/Platform.h"
#include "orch/OrchIpc.h"
#include "support/Rows.h"
#include "support/WindowParts.h"
#include "support/WindowScene.h"
#include "widgets/WidgetTopPrompt.h"

#include <QNetworkReply>

using sim::Fault;

/// The tests of one window. Every test function has a scene of its own, on which the service must
/// have found nothing wrong. Functions that wait fail the running test when nothing comes.
class SceneTest : public QObject
{
    Q_OBJECT

public slots:
    virtual void init() { m_scene = std::make_unique<WindowScene>(); }
    virtual void cleanup() { QCOMPARE(endScene(), QString()); }

protected:
    std::unique_ptr<QDialog> window;

    WindowScene& scene() const { return *m_scene; }
    sim::Simulator& service() const { return m_scene->service; }

    /// Takes window and scene down and returns what the service found wrong, a line each.
    QString endScene()
    {
        window.reset();
        const QStringList violations = service().violations();
        m_scene.reset();
        return violations.join('\n');
    }

    /// What the service does with requests to `path` from now on.
    void answer(const QString& path, const Fault& fault) const { service().setFault(path, fault); }
    void answer(const QString& path, const QByteArray& body) const
    {
        answer(path, Fault::withBody(body));
    }
    void answer(const QString& path, int status) const { answer(path, Fault::withStatus(status)); }

    /// Leaves requests to `path` without an answer until it is released.
    void hold(const QString& path) const { answer(path, Fault::withDelay(3600000)); }
    void release(const QString& path) const { answer(path, Fault()); }

    /// The window's requests without an answer yet, and the wait for the last of them.
    int underWay() const
    {
        const auto replies = window->findChildren<QNetworkReply*>() +
                             ipc::OrchIpc::instance()->findChildren<QNetworkReply*>();
        return int(std::count_if(replies.cbegin(), replies.cend(),
                                 [](QNetworkReply* reply) { return reply->isRunning(); }));
    }
    void settle() const { QTRY_COMPARE(underWay(), 0); }

    /// The requests to `path` so far, and the last one's body.
    int asked(const QByteArray& path) const { return service().count(path); }
    QJsonObject sent(const char* path) const { return service().lastRequest(path).json(); }

    static QVariant setting(const QString& key) { return ConfigUtil::getvalue(key, {}); }
    static QString saved(const QString& key) { return ConfigUtil::savedText(key); }
    static void save(const QString& key, const QVariant& value)
    {
        ConfigUtil::writeValue(key, value);
    }
    int logged(const QString& text) const { return m_scene->log().count(text); }

    template <class Part>
    Part* child(const char* name) const
    {
        return part<Part>(window.get(), name);
    }
    QPushButton* button(const char* name) const { return child<QPushButton>(name); }
    QLabel* label(const char* name) const { return child<QLabel>(name); }
    QTimer* timer(const char* name) const { return child<QTimer>(name); }

    void fire(const char* name) const { fireTimer(window.get(), name); }

    /// The top prompt's text in one line; empty while none is shown.
    QString prompt() const
    {
        const auto* prompt = window->findChild<WidgetTopPrompt*>();
        const bool shown = prompt && prompt->isVisible();
        return shown ? prompt->findChild<QLabel*>("labelText")->text().remove('\n') : QString();
    }

    static void setClock(qint64 now)
    {
        platform().clock = [now] { return now; };
    }

private:
    std::unique_ptr<WindowScene> m_scene;
};
