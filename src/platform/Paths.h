#pragma once

#include <quarry/quarry_export.h>

#include <QString>

// Where the files of a Windows installation are found on this machine.
namespace quarry::paths {

// The folder of the loaded quarry library.
QUARRY_EXPORT QString componentDir();

// The folder where "CONVERT.INI" and a bare "SEAL.INI" are looked up:
// $QUARRY_SYSTEM_DIR, else /etc/quarry.
QUARRY_EXPORT QString systemIniDir();

// The path of an existing entry of dir whose name equals name without regard
// to case (an exact match first); dir + "/" + name when there is none.
QUARRY_EXPORT QString findInDir(const QString &dir, const QString &name);

// A Windows-style path from seal.ini as a local path: backslashes separate
// folders and a drive "X:" maps to <drives>/x, <drives> being $QUARRY_DRIVES,
// else ~/.local/share/quarry/drives. Paths without a drive stay as they are.
QUARRY_EXPORT QString fromWindowsPath(const QString &path);

// Whether the local path is the folder that fromWindowsPath() maps a drive's
// root to. A drive's root always exists on Windows, so that one folder is
// ours to make when it is missing here.
QUARRY_EXPORT bool isDriveFolder(const QString &localPath);

// An INI file name as the profile functions resolve it: a relative name in
// systemIniDir(), a Windows path mapped by fromWindowsPath(); each component
// found without regard to case (the configuration upper-cases whole paths).
QUARRY_EXPORT QString resolveIniFile(const QString &name);

// The station's seal.ini: the one beside the library, else the file that
// CONVERT.INI names in [SYSTEM] INITCFG (default "SEAL.INI"), resolved by
// resolveIniFile().
QUARRY_EXPORT QString sealIni();

// $USERPROFILE, else $HOME.
QUARRY_EXPORT QString userProfile();

} // namespace quarry::paths
