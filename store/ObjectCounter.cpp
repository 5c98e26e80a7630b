#include "store/ObjectCounter.h"

#include "base/Conversions.h"
#include "store/SettingsStore.h"

#include <cmath>
#include <limits>
#include <sys/stat.h>

namespace pluvarine {

namespace {

double storedNumber(const std::string& settingsFile) {
    return leadingNumber(ReadIni(settingsFile, "Sektion", "Eintrag"));
}

std::int16_t incremented(std::int16_t counter) {
    return counter == std::numeric_limits<std::int16_t>::max()
               ? counter
               : static_cast<std::int16_t>(counter + 1);
}

} // namespace

std::int16_t counterFromNumber(double number) {
    // toInt16 rounds half to even and fails from 32767.5 up and below -32768.5.
    if (std::isnan(number)) {
        return 0;
    }
    if (number >= 32767.5) {
        return std::numeric_limits<std::int16_t>::max();
    }
    if (number < -32768.5) {
        return std::numeric_limits<std::int16_t>::min();
    }
    return toInt16(number);
}

std::int16_t counterAtStartUp(const std::string& settingsFile) {
    return counterFromNumber(storedNumber(settingsFile) + 1);
}

std::int16_t counterAfterLoad(const std::string& settingsFile) {
    return counterFromNumber(storedNumber(settingsFile));
}

std::int16_t counterAtLoadComplete(const std::string& settingsFile) {
    return incremented(counterAfterLoad(settingsFile));
}

std::int16_t counterAfterExport(const std::string& settingsFile, std::int16_t used) {
    WriteIni(settingsFile, "SEKTION", "EINTRAG", numberText(static_cast<double>(used)));
    return incremented(counterAfterLoad(settingsFile));
}

std::optional<std::int16_t> unusedObjectNumber(const std::string& objFolder, std::int16_t counter) {
    for (int number = counter; number <= std::numeric_limits<std::int16_t>::max(); ++number) {
        const std::string file = objFolder + numberText(static_cast<double>(number)) + ".tob";
        struct stat info {};
        if (::lstat(file.c_str(), &info) != 0) {
            return static_cast<std::int16_t>(number);
        }
    }
    return std::nullopt;
}

} // namespace pluvarine
