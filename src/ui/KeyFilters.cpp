#include "ui/KeyFilters.h"

#include "platform/System.h"
#include "settings/SaveSettings.h"
#include "model/ServerProfile.h"

#include <QAbstractSpinBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpression>
#include <QWidget>

namespace steward {

namespace {
bool hasAnyRule(const TextBoxKeyRules& r)
{
    return r.selectOnFocus || r.keyDownFilter || r.characterFilter || r.selectOnChange;
}
} // namespace

KeyFilters::KeyFilters(Beeper* beeper, QObject* parent) : QObject(parent), m_beeper(beeper) {}

QString KeyFilters::fieldName(const QString& objectName)
{
    static const QRegularExpression indexed(QStringLiteral("^(.+?)(?:\\((\\d+)\\)|_(\\d+))$"));
    const auto match = indexed.match(objectName);
    return match.hasMatch() ? match.captured(1) : objectName;
}

void KeyFilters::install(QWidget* root, ServerProfile* changeMark)
{
    m_changeMark = changeMark;
    QList<QWidget*> widgets = root->findChildren<QWidget*>();
    widgets.prepend(root);
    for (QWidget* w : widgets) {
        const TextBoxKeyRules rules = textBoxKeyRules(fieldName(w->objectName()));
        if (hasAnyRule(rules))
            attach(w, rules);
        else if (changeMark)
            w->installEventFilter(this);
    }
}

void KeyFilters::attach(QWidget* box, const TextBoxKeyRules& rules)
{
    if (!m_rules.contains(box))
        connect(box, &QObject::destroyed, this, [this](QObject* gone) { m_rules.remove(gone); });
    m_rules.insert(box, rules);
    box->installEventFilter(this);
    if (auto* edit = qobject_cast<QLineEdit*>(box); edit && rules.selectOnChange) {
        // After every change the whole text is selected, so the next character typed
        // replaces it; these boxes take negative values and have no filter.
        connect(edit, &QLineEdit::textChanged, edit, &QLineEdit::selectAll, Qt::UniqueConnection);
    }
}

bool KeyFilters::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        return filterKey(watched, static_cast<QKeyEvent*>(event));
    case QEvent::FocusIn: {
        const auto it = m_rules.constFind(watched);
        if (it != m_rules.cend() && it->selectOnFocus) {
            if (auto* edit = qobject_cast<QLineEdit*>(watched))
                edit->selectAll();
            else if (auto* spin = qobject_cast<QAbstractSpinBox*>(watched))
                spin->selectAll();
        }
        return false;
    }
    default:
        return false;
    }
}

bool KeyFilters::filterKey(QObject* watched, QKeyEvent* event)
{
    const QString text = event->text();
    // The window sees every key press of its controls first, refused ones included.
    if (m_changeMark && keyGivesCharacter(text))
        noteKeyPress(*m_changeMark);

    const auto it = m_rules.constFind(watched);
    if (it == m_rules.cend() || (!it->keyDownFilter && !it->characterFilter))
        return false;
    if (event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab)
        return false; // moving the focus is no key of the box

    // The two filters run one after the other: a key refused on the way down still
    // brings its character to the character filter.
    const bool keyPasses =
        !it->keyDownFilter || keyDownPasses(event->key(), event->modifiers().testFlag(Qt::KeypadModifier));
    if (!keyPasses)
        beep();
    if (!keyGivesCharacter(text))
        return !keyPasses;
    if (it->characterFilter && !characterPasses(text.at(0).unicode())) {
        beep();
        return true;
    }
    return false;
}

void KeyFilters::beep()
{
    if (m_beeper)
        m_beeper->beep();
}

} // namespace steward
