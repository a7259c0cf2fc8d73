#pragma once

#include <QStringList>

/** The name by which espeak-ng finds a voice for a language code such as "de_DE" or "de". */
QString voiceOf(const QString& code);

/** Starts espeak-ng to see whether it has a voice for the code. */
bool hasVoice(const QString& code);

/**
 * A sentence as SSML, which espeak-ng reads, with its inline tags as elements. "vol" and "rate" are
 * percentages of the usual loudness and speed, "lang" is a language code, "rst" ends all tags. Tags
 * with other names are dropped.
 *
 * @param ignored gets each of these tags whose value is invalid
 * @return empty if there is nothing to speak
 */
QString toSsml(const QString& sentence, QStringList& ignored);
