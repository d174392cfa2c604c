#pragma once
// The whole public interface of keltemporalxmp in one include.

#include <keltemporalxmp/collector.hpp>
#include <keltemporalxmp/docops.hpp>
#include <keltemporalxmp/exchange.hpp>
#include <keltemporalxmp/markers.hpp>
#include <keltemporalxmp/records.hpp>
#include <keltemporalxmp/streamread.hpp>
