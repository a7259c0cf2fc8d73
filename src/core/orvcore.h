#pragma once

/**
 * @file
 * Includes every public header of the library.
 */

#include <core/applicationsettings.h>
#include <core/inflate.h>
#include <core/orvcore_version.h>
#include <core/orvglobalinstance.h>
#include <core/parsers/ecofile.h>
#include <core/parsers/jsonfile.h>
#include <core/parsers/sentencetokenizer.h>
#include <core/posixsignals.h>
#include <core/speech/language.h>
#include <core/speech/speechchecksummanager.h>
#include <core/speech/speechcommon.h>
#include <core/types/connectivity.h>
#include <core/types/navigation.h>
#include <core/types/radiogenre.h>
#include <core/types/radiostation.h>
#include <core/types/telephony.h>
