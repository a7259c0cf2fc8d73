#include <core/types/telephony.h>

#include <tuple>

const char AppCode::HYBRID_SPEECH_APPCODE = '1';

bool Call::operator==(const Call& other) const
{
    // Calls that differ only in handle or note are equal.
    return std::tie(primaryText, secondaryText, aux1, time, state, aux2, aux3, aux4, aux5)
           == std::tie(other.primaryText, other.secondaryText, other.aux1, other.time, other.state,
               other.aux2, other.aux3, other.aux4, other.aux5);
}

bool Call::operator<(const Call& other) const
{
    return time < other.time;
}

bool DeviceMap::operator==(const DeviceMap& other) const
{
    return std::tie(deviceId, aux1, aux2) == std::tie(other.deviceId, other.aux1, other.aux2);
}
