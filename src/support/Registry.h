#pragma once
// The game's install record. Linux has no registry of its own: the record is read
// from the machine hive of a Wine prefix (system.reg), and the Windows path it holds
// is mapped onto that prefix's drives. The program only reads; nothing is written.
#include <QHash>
#include <QString>

namespace steward {

class AppContext;

/// Where the Wine prefix is looked for: $WINEPREFIX, then the home folder's ".wine".
struct WineEnvironment {
    QString winePrefix; ///< the value of WINEPREFIX, empty when unset
    QString home;       ///< the user's home folder

    /// The environment of the running process.
    static WineEnvironment fromProcess();
    /// The prefix folders to try, in order.
    QStringList prefixes() const;
};

enum class RegistryRoot { LocalMachine, CurrentUser };

namespace reg {
inline constexpr int Success = 0;
inline constexpr int FileNotFound = 2;  ///< no such value
inline constexpr int InvalidHandle = 6; ///< the key was never opened
inline constexpr int UnknownType = -1;  ///< a value of a type the program doesn't read
inline constexpr int TypeSz = 1;
inline constexpr int TypeDword = 4;
} // namespace reg

/// One value of a key as the hive file holds it.
struct RegistryValue {
    int type = 0; ///< 1 text, 2 expandable text, 3 binary, 4 double word, ...
    QString text; ///< the text of a text value, without its terminator
    quint32 dword = 0;
};

/// An opened key: its values by lower-cased name. A key that could not be opened is
/// the null handle.
class RegistryKey {
public:
    bool isOpen() const { return m_open; }
    /// The prefix whose hive held the key.
    const QString& prefix() const { return m_prefix; }

    static RegistryKey open(RegistryRoot root, const QString& subkey, const WineEnvironment& env);
    /// Parses one hive file; a key that it doesn't hold gives the null handle.
    static RegistryKey openInHive(const QString& hiveFile, const QString& subkey);

    const RegistryValue* value(const QString& name) const;

private:
    bool m_open = false;
    QString m_prefix;
    QHash<QString, RegistryValue> m_values;
};

/// Fills value with the named value of an opened key and returns the status: 0 on
/// success, -1 for a type that isn't read (value untouched), another code when the
/// value or the key is missing (value emptied). A text value keeps its terminating
/// NUL, since the size the system reports counts it.
int QueryValueEx(const RegistryKey& key, const QString& valueName, QString& value);

/// The install folder of the game from the prefix's machine hive, mapped onto the
/// prefix's drives, or an empty text when no prefix holds it. The terminating NUL of
/// the value stays at the end of the result.
QString GetInstallPath(AppContext& app, const WineEnvironment& env = WineEnvironment::fromProcess());

/// A Windows path ("C:\Games\JK2") as a path inside a Wine prefix, through its
/// dosdevices links or its drive_c folder. Empty when the drive has no counterpart.
QString mapWindowsPath(const QString& windowsPath, const QString& prefix);

/// The key of the game's installer under the machine root, and its value name.
inline const QString kInstallKey =
    QStringLiteral("SOFTWARE\\LucasArts Entertainment Company LLC\\Star Wars JK II Jedi Outcast\\1.0");
inline const QString kInstallValue = QStringLiteral("Install Path");

} // namespace steward
