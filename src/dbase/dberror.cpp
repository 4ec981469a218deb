#include "dbase/dberror.h"
