#include "ui/QtPrompts.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QFileInfo>
#include <QMessageBox>

#include <vector>

namespace steward {

namespace {
/// The file dialog's flag that asks before an existing file is replaced.
constexpr int kOverwritePrompt = 2;

QMessageBox::Icon toIcon(Icon icon)
{
    switch (icon) {
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::Exclamation:
        return QMessageBox::Warning;
    case Icon::Critical:
        return QMessageBox::Critical;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

QList<QMessageBox::StandardButton> toButtons(Buttons buttons)
{
    switch (buttons) {
    case Buttons::Ok:
        return {QMessageBox::Ok};
    case Buttons::OkCancel:
        return {QMessageBox::Ok, QMessageBox::Cancel};
    case Buttons::YesNo:
        return {QMessageBox::Yes, QMessageBox::No};
    case Buttons::YesNoCancel:
        return {QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel};
    case Buttons::RetryCancel:
        return {QMessageBox::Retry, QMessageBox::Cancel};
    case Buttons::AbortRetryIgnore:
        return {QMessageBox::Abort, QMessageBox::Retry, QMessageBox::Ignore};
    }
    return {QMessageBox::Ok};
}

Answer toAnswer(int button)
{
    switch (button) {
    case QMessageBox::Cancel:
        return Answer::Cancel;
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    case QMessageBox::Retry:
        return Answer::Retry;
    case QMessageBox::Abort:
        return Answer::Abort;
    case QMessageBox::Ignore:
        return Answer::Ignore;
    default:
        return Answer::Ok;
    }
}

/// "Desc|*.a;*.b|Other|*" as Qt name filters: "Desc (*.a *.b)".
QStringList nameFilters(const QString& filter)
{
    QStringList result;
    const QStringList parts = filter.split(QLatin1Char('|'));
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts.at(i + 1);
        patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
        QString description = parts.at(i);
        // A description that already shows its patterns keeps them as they are.
        result << (description.contains(QLatin1Char('(')) ? description.section(QLatin1Char('('), 0, 0).trimmed()
                                                          : description) +
                      QStringLiteral(" (") + patterns + QStringLiteral(")");
    }
    return result;
}
/// The open dialog takes a typed name that exists as it stands: the default extension is
/// only added to names that don't, since Linux programs (jk2ded, linuxjk2ded) have none.
class FileDialog : public QFileDialog {
public:
    using QFileDialog::QFileDialog;

protected:
    void accept() override
    {
        const QString suffix = QLatin1Char('.') + defaultSuffix();
        const QStringList chosen = selectedFiles();
        if (acceptMode() == AcceptOpen && suffix.size() > 1 && chosen.size() == 1 && chosen[0].endsWith(suffix) &&
            !QFileInfo::exists(chosen[0]) && QFileInfo(chosen[0].chopped(suffix.size())).isFile())
            setDefaultSuffix(QString());
        QFileDialog::accept();
    }
};
} // namespace

namespace {
/// The asking windows, innermost last.
std::vector<QPointer<QWidget>>& askingWindows()
{
    static std::vector<QPointer<QWidget>> windows;
    return windows;
}

/// A window of the program that a box can stand above: no menu, tooltip or the like.
bool isForm(const QWidget* w)
{
    if (!w || !w->isVisible())
        return false;
    const Qt::WindowType type = w->windowType();
    return type == Qt::Window || type == Qt::Dialog || type == Qt::Tool || type == Qt::Sheet;
}
} // namespace

AskingWindow::AskingWindow(QWidget* window) : m_window(window) { askingWindows().push_back(m_window); }

AskingWindow::~AskingWindow()
{
    auto& windows = askingWindows();
    for (auto it = windows.rbegin(); it != windows.rend(); ++it)
        if (*it == m_window) {
            windows.erase(std::next(it).base());
            break;
        }
    // Windows that went away meanwhile leave no trace.
    std::erase_if(windows, [](const QPointer<QWidget>& w) { return w.isNull(); });
}

QWidget* QtPrompts::boxParent() const
{
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    const auto& windows = askingWindows();
    for (auto it = windows.rbegin(); it != windows.rend(); ++it)
        if (isForm(it->data()))
            return it->data()->window();
    if (QWidget* active = QApplication::activeWindow(); isForm(active))
        return active;
    return m_owner;
}

QString openedFile(const QString& selected, const QString& defaultExt)
{
    const QString added = QLatin1Char('.') + defaultExt;
    if (defaultExt.isEmpty() || QFileInfo::exists(selected) || !selected.endsWith(added))
        return selected;
    const QString picked = selected.chopped(added.size());
    return QFileInfo(picked).isFile() ? picked : selected;
}

Answer QtPrompts::messageBox(const MessageBoxRequest& request)
{
    QMessageBox box(toIcon(request.icon), request.title, request.text, QMessageBox::NoButton, boxParent());
    const auto buttons = toButtons(request.buttons);
    for (auto b : buttons)
        box.addButton(b);
    const int def = std::clamp(request.defaultButton, 0, static_cast<int>(buttons.size()) - 1);
    box.setDefaultButton(buttons.at(def));
    if (request.systemModal)
        box.setWindowModality(Qt::ApplicationModal);
    return toAnswer(box.exec());
}

bool QtPrompts::fileDialog(FileDialogState& state, bool open)
{
    FileDialog dialog(boxParent(), state.DialogTitle, state.InitialDir);
    dialog.setAcceptMode(open ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    dialog.setFileMode(open ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    // Flag 2 asks before an existing file is replaced; without it the caller asks, or
    // replaces the file, itself.
    dialog.setOption(QFileDialog::DontConfirmOverwrite, (state.Flags & kOverwritePrompt) == 0);
    const QStringList filters = nameFilters(state.Filter);
    if (!filters.isEmpty()) {
        dialog.setNameFilters(filters);
        const int index = state.FilterIndex > 0 ? state.FilterIndex - 1 : 0;
        if (index < filters.size())
            dialog.selectNameFilter(filters.at(index));
    }
    if (!state.DefaultExt.isEmpty())
        dialog.setDefaultSuffix(state.DefaultExt);
    if (!state.FileName.isEmpty())
        dialog.selectFile(state.FileName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return false;
    state.FileName =
        open ? openedFile(dialog.selectedFiles().first(), state.DefaultExt) : dialog.selectedFiles().first();
    state.FileTitle = QFileInfo(state.FileName).fileName();
    state.FilterIndex = static_cast<int>(filters.indexOf(dialog.selectedNameFilter())) + 1;
    return true;
}

int QtPrompts::screenPointer() const { return m_pointer; }

void QtPrompts::setScreenPointer(int value)
{
    if (value == m_pointer)
        return;
    if (m_pointer == pointer::Hourglass)
        QApplication::restoreOverrideCursor();
    if (value == pointer::Hourglass)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    m_pointer = value;
}

void QtPrompts::processEvents() { QApplication::processEvents(); }

void QtBeeper::beep() { QApplication::beep(); }

std::optional<QString> QtPrompts::askText(const QString& title, const QString& label, const QString& text)
{
    bool ok = false;
    const QString typed = QInputDialog::getText(boxParent(), title, label, QLineEdit::Normal, text, &ok);
    if (!ok)
        return std::nullopt;
    return typed;
}

} // namespace steward
