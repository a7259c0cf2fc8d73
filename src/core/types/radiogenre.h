#pragma once

/**
 * @file
 * Tables from the vocabularies of broadcasters to genres: the programme types (PTY) of European
 * RDS (IEC 62106), which DAB uses too, those of North American RBDS (NRSC-4), and the category
 * names of satellite radio.
 *
 * The tables are filled when the library is loaded and never change; any thread may read them.
 */

#include <core/orvcore_export.h>
#include <core/types/radiostation.h>

#include <QHash>
#include <QString>

/** @addtogroup types
 * @{ */

/** By PTY code, 0 to 31; value() of any other code is RadioStation::Unknown. */
extern ORVCORE_EXPORT const QHash<int, RadioStation::Genre> rdsGenreToTyxGenreHash;

/** By PTY code, 0 to 31; value() of any other code is RadioStation::Unknown. */
extern ORVCORE_EXPORT const QHash<int, RadioStation::Genre> rbdsGenreToTyxGenreHash;

/** Genres by category name in lower case; some names have two genres. */
extern ORVCORE_EXPORT const QMultiHash<QString, RadioStation::Genre> sdarsGenreToTyxGenreHash;

/** The name of the genre's enumerator, such as "AdultHits"; null for a value that is no genre. */
ORVCORE_EXPORT QString genreName(RadioStation::Genre genre);

/** @} */
