#pragma once

// All descriptor classes of ATSC loops.

#include <quillon/atsc/ac3_audio.h>
#include <quillon/atsc/caption_service.h>
#include <quillon/atsc/content_advisory.h>
#include <quillon/atsc/content_identifier.h>
#include <quillon/atsc/dcc_request.h>
#include <quillon/atsc/genre.h>
#include <quillon/atsc/names.h>
#include <quillon/atsc/private_information.h>
#include <quillon/atsc/redistribution_control.h>
#include <quillon/atsc/service_location.h>
#include <quillon/atsc/stuffing.h>
#include <quillon/atsc/time_shifted_service.h>
#include <quillon/descriptors/general.h>
#include <quillon/descriptors/mpeg2/audio.h>
#include <quillon/descriptors/mpeg2/buffer.h>
#include <quillon/descriptors/mpeg2/ca.h>
#include <quillon/descriptors/mpeg2/dsmcc.h>
#include <quillon/descriptors/mpeg2/hierarchy.h>
#include <quillon/descriptors/mpeg2/registration.h>
#include <quillon/descriptors/mpeg2/video.h>
