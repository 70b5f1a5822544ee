#pragma once
// The controls of the three wizard pages as fields: page 1's grid of maps and the
// read-only message of the day, page 2's game types, DM flags and Saber Only, page 3's
// limits, speeds, warmup and switches. Names, indexes, Tags and defaults are the
// pages' own; the options of the game type exclude each other.
#include "model/Field.h"
#include "model/FieldNames.h"

#include <QList>
#include <QObject>
#include <memory>
#include <vector>

namespace steward {

/// Typed names of the wizard pages' own controls. The fields that bear a main window
/// field's name (optDefaultGameType, chkDMFlags, txtGameLimits, txtSpeed,
/// chkQuake3Specific) are named by F::.
namespace W {
inline constexpr FieldId txtMOTD{"txtMOTD"};
inline constexpr FieldId grdMapList{"grdMapList"};
inline constexpr FieldId chkWizardDuelNoWeapons{"chkWizardDuelNoWeapons"};
inline constexpr FieldArray txtWarmup{"txtWarmup"};
/// The buttons. cmdNext is a field as well: the flow enables and disables it.
inline constexpr FieldId cmdNext{"cmdNext"};
inline constexpr FieldId cmdBack{"cmdBack"};
inline constexpr FieldId cmdCancel{"cmdCancel"};
inline constexpr FieldId cmdNextMap{"cmdNextMap"};
inline constexpr FieldId cmdFinish{"cmdFinish"};
} // namespace W

class WizardPageFields : public QObject {
    Q_OBJECT
public:
    explicit WizardPageFields(QObject* parent = nullptr);
    ~WizardPageFields() override;

    /// The field by name and index (-1 outside an array); an unknown one is error 340.
    Field& field(const QString& name, int index = -1) const;
    Field* find(const QString& name, int index = -1) const;
    /// A page control that bears the name of a main window field.
    Field& field(FieldId id) const { return field(id.nameText(), id.index); }
    /// The fields of a page (1 to 3) in the order the page shows them.
    std::vector<Field*> page(int number) const;

private:
    void onOptionChanged(Field* option);

    std::vector<std::unique_ptr<Field>> m_fields;
    std::vector<int> m_pages;
};

} // namespace steward
