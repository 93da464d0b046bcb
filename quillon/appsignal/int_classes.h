#pragma once

// All descriptor classes of IP/MAC notification loops.

#include <quillon/appsignal/platform_name.h>
#include <quillon/appsignal/slash.h>
#include <quillon/appsignal/stream_location.h>
#include <quillon/appsignal/target.h>
#include <quillon/descriptors/dvb_classes.h>
