// Every action class in one include.
#pragma once

#include "swf/SwfAction.h"
#include "swf/actions/ActionDefineFunction.h"
#include "swf/actions/ActionPush.h"
#include "swf/actions/ActionWith.h"
#include "swf/actions/BranchActions.h"
#include "swf/actions/FrameActions.h"
#include "swf/actions/SwfConstantPool.h"
#include "swf/actions/UrlActions.h"
