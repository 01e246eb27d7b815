#include "telemetry/families/GpmfRecord.h"

#include <algorithm>

namespace velmorant::telemetry {

namespace {

std::size_t widthOf(char type) {
    switch (type) {
    case 'b':
    case 'B':
    case 'c':
        return 1;
    case 's':
    case 'S':
        return 2;
    case 'l':
    case 'L':
    case 'f':
    case 'F':
        return 4;
    case 'd':
    case 'j':
    case 'J':
        return 8;
    case 'U':
    case 'G':
        return 16;
    default:
        return 0;
    }
}

double number(Bytes data, std::size_t at, char type) {
    switch (type) {
    case 'b':
        return data.i8(at);
    case 'B':
        return data.u8(at);
    case 's':
        return data.i16be(at);
    case 'S':
        return data.u16be(at);
    case 'l':
        return data.i32be(at);
    case 'L':
        return data.u32be(at);
    case 'f':
        return static_cast<double>(data.f32be(at));
    case 'd':
        return data.f64be(at);
    case 'j':
        return static_cast<double>(static_cast<std::int64_t>(data.u64be(at)));
    case 'J':
        return static_cast<double>(data.u64be(at));
    default:
        return 0;
    }
}

} // namespace

bool GpmfWalker::next(GpmfRecord& record) {
    if (!bytes_.has(at_, 8)) {
        return false;
    }
    record.key = bytes_.u32be(at_);
    record.type = bytes_.character(at_ + 4);
    record.structSize = bytes_.u8(at_ + 5);
    record.repeat = bytes_.u16be(at_ + 6);
    const std::size_t length = record.structSize * record.repeat;
    if (record.key == 0) {
        return false; // padding behind the last record
    }
    record.data = bytes_.from(at_ + 8, length);
    cut_ = cut_ || record.data.size() < length;
    at_ += 8 + (length + 3) / 4 * 4;
    if (record.data.size() < length && record.type != 0) {
        // Rows before the cut are whole.
        record.repeat = record.structSize == 0 ? 0 : record.data.size() / record.structSize;
    }
    return true;
}

std::string gpmfFields(const GpmfRecord& type) {
    std::string fields;
    const std::string_view text = type.data.text(0);
    for (std::size_t i = 0; i < text.size() && fields.size() < 255; ++i) {
        if (text[i] == 0) {
            break;
        }
        if (text[i] == '[' && !fields.empty()) {
            std::size_t times = 0;
            for (++i; i < text.size() && text[i] >= '0' && text[i] <= '9' && times < 256; ++i) {
                times = times * 10 + static_cast<std::size_t>(text[i] - '0');
            }
            fields.append(std::min<std::size_t>(times > 0 ? times - 1 : 0, 255), fields.back());
        } else if (widthOf(text[i]) > 0) {
            fields.push_back(text[i]);
        }
    }
    return fields;
}

GpmfRow gpmfRow(const GpmfRecord& record, std::size_t row, std::string_view fields,
                const GpmfRow& scale) {
    GpmfRow values;
    if (row >= record.repeat) {
        return values;
    }
    const bool structured = record.type == '?';
    std::size_t at = row * record.structSize;
    const std::size_t end = at + record.structSize;
    for (std::size_t i = 0; at < end && !values.full(); ++i) {
        if (structured && i >= fields.size()) {
            break;
        }
        const char type = structured ? fields[i] : record.type;
        const std::size_t width = widthOf(type);
        if (width == 0 || width > end - at) {
            break;
        }
        const double divisor = scale.empty() ? 1 : scale[std::min(i, scale.size() - 1)];
        values.push_back(number(record.data, at, type) / (divisor == 0 ? 1 : divisor));
        at += width;
    }
    return values;
}

} // namespace velmorant::telemetry
