#include "ui/ScannerWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

namespace steward {

ScannerWindow::ScannerWindow(QWidget* parent) : QDialog(parent)
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

void ScannerWindow::closeEvent(QCloseEvent* event) { event->ignore(); }

ScannerWindowProgress::~ScannerWindowProgress() { unload(); }

ScannerWindow& ScannerWindowProgress::load()
{
    if (!m_window) {
        m_window = new ScannerWindow(m_owner);
        m_asking = std::make_unique<AskingWindow>(m_window);
    }
    return *m_window;
}

void ScannerWindowProgress::show()
{
    ScannerWindow& window = load();
    window.show();
    window.raise();
    // The scan holds the event loop: let the new window come up and paint once.
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void ScannerWindowProgress::hide()
{
    if (m_window)
        m_window->hide();
}

void ScannerWindowProgress::unload()
{
    m_asking.reset();
    delete m_window.data();
    m_window.clear();
}

void ScannerWindowProgress::setActivity(const QString& text)
{
    QLabel* label = load().activityLabel();
    label->setText(text);
    if (label->isVisible())
        label->repaint();
}

void ScannerWindowProgress::setActivityVisible(bool visible) { load().activityLabel()->setVisible(visible); }

void ScannerWindowProgress::setMaximum(int maximum)
{
    // A range of 0 to 0 would make the bar a busy indicator.
    load().progressBar()->setRange(0, std::max(maximum, 1));
}

void ScannerWindowProgress::setValue(int value)
{
    QProgressBar* bar = load().progressBar();
    bar->setValue(std::clamp(value, bar->minimum(), bar->maximum()));
}

void ScannerWindowProgress::setBusy(bool busy)
{
    ScannerWindow& window = load();
    if (busy)
        window.setCursor(Qt::WaitCursor);
    else
        window.unsetCursor();
}

} // namespace steward
