#include "model/ServerProfile.h"

#include "model/ProfileTable.h"
#include "support/Errors.h"

namespace steward {

const std::vector<FieldDefinition>& profileFieldTable()
{
    static const std::vector<FieldDefinition> table = buildProfileFieldTable();
    return table;
}

ServerProfile::ServerProfile(QObject* parent) : QObject(parent)
{
    for (const FieldDefinition& definition : profileFieldTable())
        add(definition);
}

ServerProfile::~ServerProfile() = default;

void ServerProfile::add(const FieldDefinition& definition)
{
    auto owned = std::make_unique<Field>(definition);
    Field* f = owned.get();
    m_fields.push_back(std::move(owned));
    m_order.push_back(f);
    m_byKey.insert(f->key(), f);
    if (definition.index >= 0) {
        auto it = m_bounds.find(definition.name);
        if (it == m_bounds.end())
            m_bounds.insert(definition.name, {definition.index, definition.index});
        else
            *it = {std::min(it->first, definition.index), std::max(it->second, definition.index)};
    }
    if (definition.kind == FieldKind::Option && !definition.optionGroup.isEmpty()) {
        m_groups[definition.optionGroup].push_back(f);
        connect(f, &Field::valueChanged, this, &ServerProfile::onOptionChanged);
    }
    connect(f, &Field::changed, this, &ServerProfile::fieldChanged);
}

void ServerProfile::onOptionChanged(Field* field)
{
    // Selecting an option clears the others of its group.
    if (!field->isSet())
        return;
    for (Field* other : m_groups.value(field->definition().optionGroup))
        if (other != field)
            other->setValue(0);
}

Field* ServerProfile::findByName(const QString& name, int index) const
{
    return m_byKey.value(Field::makeKey(name, index), nullptr);
}

Field& ServerProfile::fieldNamed(const QString& name, int index) const
{
    if (Field* f = findByName(name, index))
        return *f;
    raiseError(err::ControlArrayElement,
               QStringLiteral("Control array element '%1' doesn't exist").arg(Field::makeKey(name, index)));
}

QPair<int, int> ServerProfile::bounds(const QString& name) const
{
    auto it = m_bounds.find(name);
    if (it == m_bounds.end())
        raiseError(err::ControlArrayElement, QStringLiteral("'%1' is not an array").arg(name));
    return *it;
}

std::vector<Field*> ServerProfile::array(FieldArray array) const
{
    std::vector<Field*> members;
    const auto [low, high] = bounds(array.nameText());
    for (int i = low; i <= high; ++i)
        if (Field* f = findByName(array.nameText(), i))
            members.push_back(f);
    return members;
}

void ServerProfile::resetAll()
{
    for (Field* f : m_order) {
        const FieldDefinition& s = f->definition();
        if (s.kind == FieldKind::Check || s.kind == FieldKind::Option || s.kind == FieldKind::State)
            f->setValue(s.defaultText.toInt());
        if (s.kind != FieldKind::Check && s.kind != FieldKind::Option)
            f->setText(s.defaultText);
        f->setItems({});
        f->setRows({});
        f->setTag(s.tag);
    }
}

void ServerProfile::click(FieldId box) const
{
    const auto routine = m_clicks.constFind(box.key());
    if (routine != m_clicks.constEnd() && *routine)
        (*routine)();
}

void setCheckFromCode(ServerProfile& profile, FieldId box, int value)
{
    Field& field = profile.field(box);
    const int before = field.value();
    field.setValue(value);
    if (field.value() != before)
        profile.click(box);
}

} // namespace steward
