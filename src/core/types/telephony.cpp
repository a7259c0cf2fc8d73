#include <core/types/telephony.h>

#include <tuple>

static_assert(sizeof(Call::handle) == 2 && sizeof(Call::aux2) == 1 && sizeof(Call::aux3) == 2
                  && sizeof(Call::aux4) == 1 && sizeof(Call::aux5) == 1
                  && sizeof(DeviceMap::aux2) == 1 && sizeof(AppCode::HYBRID_SPEECH_APPCODE) == 1,
    "sizes are interface");

const char AppCode::HYBRID_SPEECH_APPCODE = '1';

bool Call::operator==(const Call& other) const
{
    const auto fields = [](const Call& r) {
        return std::tie(r.primaryText, r.secondaryText, r.aux1, r.time, r.state, r.aux2, r.aux3,
            r.aux4, r.aux5);
    };
    return fields(*this) == fields(other);
}

bool Call::operator<(const Call& other) const
{
    return time < other.time;
}

bool DeviceMap::operator==(const DeviceMap& other) const
{
    return std::tie(deviceId, aux1, aux2) == std::tie(other.deviceId, other.aux1, other.aux2);
}
