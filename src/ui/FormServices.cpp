#include "ui/FormServices.h"

#include "support/ErrorReporter.h"
#include "support/Errors.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <QWidget>

namespace steward {

namespace {

const char* const kGuardName = "stewardCloseGuard";
const char* const kUnloadingProperty = "stewardUnloading";

/// Swallows every close request but the program's own unload.
class CloseGuard final : public QObject {
public:
    explicit CloseGuard(QObject* parent) : QObject(parent) { setObjectName(QString::fromLatin1(kGuardName)); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Close && !isUnloading(qobject_cast<QWidget*>(watched))) {
            event->ignore();
            return true;
        }
        return QObject::eventFilter(watched, event);
    }
};

template <typename F>
void guarded(AppContext& app, const QString& routine, F body)
{
    try {
        body();
    } catch (const RuntimeError& e) {
        reportPlain(app, e, routine);
    } catch (const std::exception& e) {
        reportPlain(app, RuntimeError(err::InvalidProcedureCall, QString::fromLocal8Bit(e.what())), routine);
    }
}

constexpr int kObjectNotSet = 91;

void requireForm(const QWidget* form)
{
    if (!form)
        raiseError(kObjectNotSet, QStringLiteral("Object variable or With block variable not set"));
}

} // namespace

void CenterForm(AppContext& app, QWidget* form)
{
    guarded(app, QStringLiteral("CenterForm"), [form] {
        requireForm(form);
        QScreen* screen = form->screen() ? form->screen() : QGuiApplication::primaryScreen();
        if (!screen)
            return;
        const QRect area = screen->geometry();
        const QSize size = form->frameGeometry().size();
        form->move(area.left() + (area.width() - size.width()) / 2, area.top() + (area.height() - size.height()) / 2);
    });
}

void DisableCloseMenu(AppContext& app, QWidget* form)
{
    guarded(app, QStringLiteral("DisableCloseMenu"), [form] {
        requireForm(form);
        if (closeMenuDisabled(form))
            return;
        form->installEventFilter(new CloseGuard(form));
    });
}

bool closeMenuDisabled(const QWidget* form)
{
    return form && form->findChild<QObject*>(QString::fromLatin1(kGuardName), Qt::FindDirectChildrenOnly);
}

void unloadForm(QWidget* form)
{
    if (!form)
        return;
    form->setProperty(kUnloadingProperty, true);
    QPointer<QWidget> alive(form);
    const bool closed = form->close();
    if (alive && closed && !form->testAttribute(Qt::WA_DeleteOnClose))
        form->deleteLater();
    else if (alive && !closed)
        form->setProperty(kUnloadingProperty, false);
}

bool isUnloading(const QWidget* form) { return form && form->property(kUnloadingProperty).toBool(); }

void FormOnTop(AppContext& app, QWidget* form, bool onTop)
{
    guarded(app, QStringLiteral("FormOnTop"), [form, onTop] {
        requireForm(form);
        if (form->windowFlags().testFlag(Qt::WindowStaysOnTopHint) == onTop)
            return;
        const bool wasVisible = form->isVisible();
        const QRect geometry = form->geometry();
        form->setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
        form->setGeometry(geometry);
        if (wasVisible)
            form->show();
    });
}

} // namespace steward
