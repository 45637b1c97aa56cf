#pragma once

#include <array>

/// The names of the chip's channels, and the lists of what can control a PWM.
namespace zth::chip {

/// In the order of MeasurementSet::Temperature.
inline constexpr std::array kTemperatureNames{"Local", "Remote1", "Remote2", "Remote3"};

inline constexpr int kTemperatures = static_cast<int>(kTemperatureNames.size());

/// What the behaviour field of a PWM's configuration can be; a name's position is the value of the field.
inline constexpr std::array kBehaviourNames{
    "Local", "Remote1", "Remote2", "Remote3", "Off", "Max of Local/Remote3", "Max of 4 Channels", "Manual Mode"};

/// The values that can be logged, by row of LogChannelTable: captions of the logging window and headings of its file.
inline constexpr std::array kLogCaptions{"Local Temp",
                                         "Remote1 Temp",
                                         "Remote2 Temp",
                                         "Remote3 Temp",
                                         "Tach1",
                                         "Tach2",
                                         "Tach3",
                                         "Tach4",
                                         "Tach5",
                                         "Tach6",
                                         "Tach7",
                                         "Tach8",
                                         "PWM1%",
                                         "PWM2%",
                                         "PWM3%",
                                         "PWM4%",
                                         "12V1",
                                         "12V2",
                                         "3.3V-Pin13",
                                         "2.5V-Pin15",
                                         "1.8V-Pin15",
                                         "1.25V-Pin20",
                                         "0.9V-Pin20",
                                         "5V",
                                         "12V3",
                                         "Vccp1",
                                         "1.5V-Pin23",
                                         "1.8-Pin23",
                                         "2.5V-Pin23",
                                         "Vccp2",
                                         "1.5V-Pin24",
                                         "1.8V-Pin24",
                                         "2.5V-Pin24",
                                         "1.2V-Pin25",
                                         "3.3V-Pin25",
                                         "1.2V-Pin26",
                                         "VBatt",
                                         "1.5V2",
                                         "1.5V1",
                                         "Local Tmin",
                                         "Remote1 Tmin",
                                         "Remote2 Tmin",
                                         "Remote3 Tmin",
                                         "Remote1 Op-Point",
                                         "Remote2 Op-Point"};

}  // namespace zth::chip
