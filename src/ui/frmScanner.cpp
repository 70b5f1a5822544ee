#include "ui/frmScanner.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

namespace steward {

frmScanner::frmScanner(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmScanner"));
    setWindowTitle(QStringLiteral("Map Scanner"));
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setModal(false);

    m_scanning = new QLabel(QStringLiteral("Current Progress:"), this);
    m_scanning->setObjectName(QStringLiteral("lblScanning"));
    m_activity = new QLabel(this);
    m_activity->setObjectName(QStringLiteral("lblScannerShow"));
    m_activity->setTextFormat(Qt::PlainText);
    m_activity->setMinimumWidth(320);
    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("pctCurrentProg"));
    m_progress->setRange(0, 1);
    m_progress->setValue(0);
    m_progress->setTextVisible(false);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_scanning);
    layout->addWidget(m_progress);
    layout->addWidget(m_activity);
    setFixedSize(sizeHint().expandedTo(QSize(360, 110)));
}

void frmScanner::closeEvent(QCloseEvent* event) { event->ignore(); }

frmScannerProgress::~frmScannerProgress() { unload(); }

frmScanner& frmScannerProgress::load()
{
    if (!m_window) {
        m_window = new frmScanner(m_owner);
        m_asking = std::make_unique<AskingWindow>(m_window);
    }
    return *m_window;
}

void frmScannerProgress::show()
{
    frmScanner& window = load();
    window.show();
    window.raise();
    // The scan holds the event loop: let the new window come up and paint once.
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    m_pacer.painted();
}

void frmScannerProgress::hide()
{
    if (m_window)
        m_window->hide();
}

void frmScannerProgress::unload()
{
    m_asking.reset();
    delete m_window.data();
    m_window.clear();
}

void frmScannerProgress::setActivity(const QString& text)
{
    // A label only asks for a paint on a change; the paint itself is made here.
    load().activityLabel()->setText(text);
    paintWhenDue();
}

void frmScannerProgress::setActivityVisible(bool visible) { load().activityLabel()->setVisible(visible); }

void frmScannerProgress::setMaximum(int maximum)
{
    // A range of 0 to 0 would make the bar a busy indicator.
    changeBar([maximum](QProgressBar& bar) { bar.setRange(0, std::max(maximum, 1)); });
    paintWhenDue();
}

void frmScannerProgress::setValue(int value)
{
    changeBar([value](QProgressBar& bar) { bar.setValue(std::clamp(value, bar.minimum(), bar.maximum())); });
    paintWhenDue();
}

void frmScannerProgress::setBusy(bool busy)
{
    frmScanner& window = load();
    if (busy)
        window.setCursor(Qt::WaitCursor);
    else
        window.unsetCursor();
}

void frmScannerProgress::phaseDone()
{
    if (m_window)
        paint();
}

template <typename Change>
void frmScannerProgress::changeBar(Change change)
{
    // QProgressBar repaints itself at once whenever its value moves by a chunk; held,
    // it only asks for a paint, which the next frame or the event loop makes.
    QProgressBar& bar = *load().progressBar();
    bar.setUpdatesEnabled(false);
    change(bar);
    bar.setUpdatesEnabled(true);
}

void frmScannerProgress::paintWhenDue()
{
    if (m_pacer.frameDue())
        paint();
}

void frmScannerProgress::paint()
{
    frmScanner& window = load();
    if (!window.isVisible())
        return;
    QRect area = window.progressBar()->geometry();
    if (window.activityLabel()->isVisible())
        area |= window.activityLabel()->geometry();
    window.repaint(area);
    m_pacer.painted();
}

} // namespace steward
