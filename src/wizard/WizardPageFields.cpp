#include "wizard/WizardPageFields.h"

#include "support/Errors.h"

namespace steward {

namespace {
struct Row {
    int page;
    FieldDefinition definition;
};

FieldDefinition def(FieldId id, FieldKind kind, const QString& caption, const QString& tag = {},
                    const QString& defaultText = {})
{
    FieldDefinition d;
    d.name = id.nameText();
    d.index = id.index;
    d.kind = kind;
    d.caption = caption;
    d.tag = tag;
    d.defaultText = defaultText;
    if (kind == FieldKind::Check || kind == FieldKind::Option)
        d.defaultText = defaultText.isEmpty() ? QStringLiteral("0") : defaultText;
    return d;
}

std::vector<Row> table()
{
    using K = FieldKind;
    std::vector<Row> rows;
    rows.push_back({1, def(W::txtMOTD, K::Text, QStringLiteral("MOTD"))});
    rows.push_back({1, def(W::grdMapList, K::Grid, QString())});
    rows.push_back({1, def(W::cmdNext, K::State, QStringLiteral("Next >"))});

    const char* types[][2] = {
        {"&Free For All", "0"},      {"&Holocron", "1"},         {"&Jedi Master", "2"},          {"D&uel", "3"},
        {"&Team Free For All", "5"}, {"&Capture the Flag", "7"}, {"Capture the &Ysalimari", "8"}};
    int i = 0;
    for (const auto& type : types) {
        FieldDefinition d = def(F::optDefaultGameType(i), K::Option, QString::fromUtf8(type[0]),
                                QString::fromUtf8(type[1]), i == 0 ? QStringLiteral("1") : QStringLiteral("0"));
        d.optionGroup = QStringLiteral("wizardGameType");
        rows.push_back({2, d});
        ++i;
    }
    rows.push_back({2, def(F::chkDMFlags(0), K::Check, QStringLiteral("No Falling Damage"), QStringLiteral("8"))});
    rows.push_back({2, def(F::chkDMFlags(1), K::Check, QStringLiteral("Fixed Field of Vision"), QStringLiteral("16"))});
    rows.push_back({2, def(F::chkDMFlags(2), K::Check, QStringLiteral("No Footsteps"), QStringLiteral("32"))});
    rows.push_back({2, def(W::chkWizardDuelNoWeapons, K::Check, QStringLiteral("Saber Only"))});

    const char* limits[][3] = {{"Kills", "fraglimit", "0"},
                               {"Time", "timelimit", "20"},
                               {"Duels", "duel_fraglimit", "0"},
                               {"Captures", "capturelimit", "0"}};
    i = 0;
    for (const auto& limit : limits)
        rows.push_back({3, def(F::txtGameLimits(i++), K::Text, QString::fromUtf8(limit[0]), QString::fromUtf8(limit[1]),
                               QString::fromUtf8(limit[2]))});
    rows.push_back({3, def(F::txtSpeed(0), K::Text, QStringLiteral("Run Speed"), QStringLiteral("g_speed"),
                           QStringLiteral("250"))});
    rows.push_back({3, def(F::txtSpeed(1), K::Text, QStringLiteral("Gravity"), QStringLiteral("g_gravity"),
                           QStringLiteral("800"))});
    // The box's own Tag isn't what the record stores: that is always "g_warmup".
    rows.push_back({3, def(W::txtWarmup(1), K::Text, QStringLiteral("Warmup"), QStringLiteral("g_doWarmup"),
                           QStringLiteral("60"))});
    const char* switches[][3] = {{"5", "&Friendly Fire", "g_friendlyfire"},
                                 {"11", "Enable Private Duel", "g_privateDuel"},
                                 {"15", "&Saber Lock", "g_saberLocking"},
                                 {"16", "Friendly Saber", "g_friendlySaber"},
                                 {"0", "Disable The Force", "g_forcePowerDisable"}};
    for (const auto& s : switches)
        rows.push_back({3, def(F::chkQuake3Specific(QString::fromUtf8(s[0]).toInt()), K::Check, QString::fromUtf8(s[1]),
                               QString::fromUtf8(s[2]))});
    return rows;
}
} // namespace

WizardPageFields::WizardPageFields(QObject* parent) : QObject(parent)
{
    for (const Row& row : table()) {
        auto field = std::make_unique<Field>(row.definition, this);
        if (row.definition.kind == FieldKind::Option)
            connect(field.get(), &Field::valueChanged, this, &WizardPageFields::onOptionChanged);
        m_fields.push_back(std::move(field));
        m_pages.push_back(row.page);
    }
    field(W::chkWizardDuelNoWeapons).setVisible(false);
    field(W::cmdNext).setEnabled(false);
}

WizardPageFields::~WizardPageFields() = default;

Field* WizardPageFields::find(const QString& name, int index) const
{
    for (const auto& f : m_fields)
        if (f->name() == name && f->index() == index)
            return f.get();
    return nullptr;
}

Field& WizardPageFields::field(const QString& name, int index) const
{
    Field* f = find(name, index);
    if (!f)
        raiseError(err::ControlArrayElement, {}, Field::makeKey(name, index));
    return *f;
}

std::vector<Field*> WizardPageFields::page(int number) const
{
    std::vector<Field*> result;
    for (std::size_t i = 0; i < m_fields.size(); ++i)
        if (m_pages[i] == number)
            result.push_back(m_fields[i].get());
    return result;
}

void WizardPageFields::onOptionChanged(Field* option)
{
    if (!option->isSet())
        return;
    for (const auto& f : m_fields)
        if (f.get() != option && f->kind() == FieldKind::Option &&
            f->definition().optionGroup == option->definition().optionGroup)
            f->setValue(0);
}

} // namespace steward
