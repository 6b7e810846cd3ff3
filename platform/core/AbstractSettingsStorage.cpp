#include "platform/core/AbstractSettingsStorage.h"

namespace ko
{

AbstractSettingsStorage::AbstractSettingsStorage() = default;
AbstractSettingsStorage::~AbstractSettingsStorage() = default;

} // namespace ko
