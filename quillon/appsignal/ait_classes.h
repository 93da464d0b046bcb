#pragma once

// All descriptor classes of application loops.

#include <quillon/appsignal/application.h>
#include <quillon/appsignal/dvb_html.h>
#include <quillon/appsignal/dvb_j.h>
#include <quillon/appsignal/prefetch.h>
#include <quillon/appsignal/routing.h>
#include <quillon/appsignal/transport_protocol.h>
#include <quillon/descriptors/general.h>
#include <quillon/descriptors/service/private_data_specifier.h>
