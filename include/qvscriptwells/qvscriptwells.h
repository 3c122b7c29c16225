// All of the library's public headers.
#pragma once

#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/error_info.h"
#include "qvscriptwells/guid.h"
#include "qvscriptwells/host_services.h"
#include "qvscriptwells/http_component.h"
#include "qvscriptwells/objects.h"
#include "qvscriptwells/result_codes.h"
#include "qvscriptwells/simple_host.h"
#include "qvscriptwells/unknown.h"
#include "qvscriptwells/variant.h"
#include "qvscriptwells/wide_string.h"
#include "qvscriptwells/xml_library_hold.h"
