#pragma once

#include "checks/finding.h"

/** A finding with the name of its file. */
using FileFinding = QPair<QString, Finding>;

/** The findings as SARIF 2.1.0, which build servers and editors read. */
QJsonObject sarifOf(const QVector<FileFinding>& findings);
