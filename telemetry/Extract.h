// From a recording to its telemetry.
#pragma once

#include <span>
#include <string>

#include "telemetry/FamilyTable.h"
#include "telemetry/Input.h"
#include "telemetry/Samples.h"
#include "telemetry/Siblings.h"

namespace velmorant::telemetry {

// One sample per second of the recording; where it holds no telemetry, samples without a fix for
// every second of its length (family "none"). An error where the file cannot be used at all.
// `siblings` are asked where the recording itself holds nothing; they may be null.
Result<Telemetry> extract(ByteSource& source, const ReadOptions& options = {},
                          Siblings* siblings = nullptr);
// The same, asking only the given families.
Result<Telemetry> extractWith(std::span<const Family> asked, ByteSource& source,
                              const ReadOptions& options, Siblings* siblings);
// Whether the first bytes are those of a recording, usable or not.
bool beginsAsRecording(ByteSource& source);
Result<Telemetry> extractFile(const std::string& path, const ReadOptions& options = {});

} // namespace velmorant::telemetry
