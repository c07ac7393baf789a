// A settings file as anybody may read it, without the toolkit, which keeps what it has read.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

namespace panelkit::simulator {

// Values by "section/key".
using IniValues = QMap<QString, QString>;

// The lines "key=value" behind each "[section]"; everything else is passed over. For files in ASCII without
// quoted values.
IniValues iniValues(const QByteArray &file);

// The bytes of a file; none when it cannot be read.
QByteArray fileBytes(const QString &path);

// Puts another file in the place of one, as a program that saves anew does: whoever reads finds the one or
// the other, and the new one is the younger. False when that cannot be done.
bool replaceFile(const QString &path, const QByteArray &content);

// How the values differ, in a line; empty when they do not.
QString difference(const IniValues &expected, const IniValues &found);

} // namespace panelkit::simulator
