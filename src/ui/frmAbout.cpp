#include "ui/frmAbout.h"

#include "support/AppContext.h"
#include "commands/Commands.h"
#include "model/Constants.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QTimer>
#include <QVBoxLayout>

namespace steward {

namespace {
bool g_aboutLoaded = false;
}

frmAbout::frmAbout(AppContext& app, QWidget* parent) : QDialog(parent), m_app(app), m_timer(new QTimer(this))
{
    g_aboutLoaded = true;
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(aboutTitle());
    setModal(true);
    setFixedSize(400, 260);

    auto* layout = new QVBoxLayout(this);
    auto* title = new QLabel(kProductTitle, this);
    title->setObjectName(QStringLiteral("Picture1"));
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * 1.8);
    big.setBold(true);
    title->setFont(big);
    title->setAlignment(Qt::AlignCenter);
    layout->addWidget(title);

    // The marquee scrolls its lines upward inside a clipped viewport.
    m_viewport = new QWidget(this);
    m_viewport->setObjectName(QStringLiteral("marquee"));
    m_viewport->setMinimumHeight(140);
    m_marquee = new QLabel(aboutLines().join(QLatin1Char('\n')), m_viewport);
    m_marquee->setObjectName(QStringLiteral("lblMarquee"));
    m_marquee->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    layout->addWidget(m_viewport, 1);

    // The mail label looks like a link; its click is its own and leaves the window open.
    m_mail = new QLabel(QStringLiteral("<a href=\"mail\">%1</a>").arg(kContactAddress), this);
    m_mail->setObjectName(QStringLiteral("lblMailMe"));
    m_mail->setAlignment(Qt::AlignCenter);
    m_mail->setTextInteractionFlags(Qt::NoTextInteraction);
    m_mail->setCursor(Qt::PointingHandCursor);
    layout->addWidget(m_mail);

    for (QWidget* w : std::initializer_list<QWidget*>{title, m_viewport, m_marquee, m_mail})
        w->installEventFilter(this);

    connect(m_timer, &QTimer::timeout, this, &frmAbout::scroll);
    m_timer->start(40);
}

frmAbout::~frmAbout() { g_aboutLoaded = false; }

bool frmAbout::isLoaded() { return g_aboutLoaded; }

void frmAbout::scroll()
{
    const int width = m_viewport->width();
    m_marquee->setFixedWidth(width);
    m_marquee->adjustSize();
    const int travel = m_viewport->height() + m_marquee->height();
    m_offset = (m_offset + 1) % std::max(travel, 1);
    m_marquee->move(0, m_viewport->height() - m_offset);
}

void frmAbout::mousePressEvent(QMouseEvent* event)
{
    event->accept();
    accept();
}

void frmAbout::keyPressEvent(QKeyEvent* event)
{
    event->accept();
    accept();
}

bool frmAbout::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress) {
        if (watched == m_mail)
            mailAuthor(m_app);
        else
            accept();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void showAbout(AppContext& app, QWidget* mainWindow)
{
    if (mainWindow)
        mainWindow->repaint();
    QApplication::processEvents();
    {
        frmAbout about(app, mainWindow);
        about.exec();
    }
    QApplication::processEvents();
    if (mainWindow)
        mainWindow->show();
}

} // namespace steward
