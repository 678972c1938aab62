// Marks what the library exports; everything else is hidden.
#pragma once

#define VORN_API __attribute__( ( visibility( "default" ) ) )
