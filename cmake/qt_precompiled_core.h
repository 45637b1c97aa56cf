// What many sources of the rooms without widgets include.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
