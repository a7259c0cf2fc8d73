#pragma once

#include <QStringList>

/** The name by which espeak-ng finds a voice for a language code such as "de_DE" or "de". */
QString voiceOf(const QString& code);

/** Starts espeak-ng to see whether it has a voice for the code. */
bool hasVoice(const QString& code);

/**
 * A sentence as SSML, which espeak-ng understands, with its inline tags as elements. "vol" and "rate"
 * are per cent of the usual loudness and speed, "lang" is a language code, "rst" ends them all; tags of
 * other names are for other engines.
 *
 * @param ignored gets each tag with a value that has no meaning here
 * @return empty when nothing is left to be said
 */
QString toSsml(const QString& sentence, QStringList& ignored);
