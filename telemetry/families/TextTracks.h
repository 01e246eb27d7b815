// Text in the samples of a track with the handler "text", "sbtl" or "subt", or with the sample
// entry "text" or "tx3g". A sample starts with its length, u16be, as a rule. Its text is one of:
//   sentences of NMEA 0183, with or without "$"
//   gsensori,RANGE,STEPS,X,Y,Z;     acceleration in counts, STEPS counts to RANGE g; sentences
//   follow "PNDM" and binary, big-endian, counted from its first letter: u16 miles per hour at 8,
//   i32 latitude at 12, i32 longitude at 16 in 2^31 to 180 degrees; no time (four bytes may stand
//   in front) enciphered text in columns, see EncipheredText.h: 00 00 F2 E1 F0 EE, or AA AA in
//   place of F0 EE
// Tracks with the sample entry "nbmt" hold: four zero bytes, 14 digits of the recorder's clock,
// u16be count, count times 12 bytes of raw acceleration and rotation (in unknown units, left out),
// then sentences, whose date may be missing.
#pragma once

#include "telemetry/Collector.h"
#include "telemetry/Recording.h"

namespace velmorant::telemetry {

bool readTextTracks(Recording& recording, Collector& collector);
bool readSentenceTracks(Recording& recording, Collector& collector); // "nbmt"

// Hands what one such text holds to the collector; false where it holds nothing.
bool readTelemetryText(Bytes text, double time, double duration, Collector& collector);

} // namespace velmorant::telemetry
