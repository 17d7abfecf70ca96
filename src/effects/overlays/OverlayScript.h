// A small stack language for the overlay effects' action programs, turned
// into SWF 5 actions. Writing the programs as text keeps each effect's
// motion readable on a few lines instead of a long run of push records.
//
// A program is lines (or ';'-separated statements):
//   name := rpn...          sets a variable of the current timeline
//   [target rpn] .prop := rpn...   sets a clip property; no target means this clip ('')
//   LABEL:                  a branch target
//   rpn...                  anything else
// Words of rpn:
//   12  -3  0.25            numbers (integers pushed as integers)
//   'text'                  a string (no spaces)
//   name                    the variable's value
//   + - * / %  < >  ==  !  and or     arithmetic, comparison, logic (numeric)
//   &  streq                string join, string equality
//   rand  int  sin  cos     random(n) 0..n-1, truncation, Math.sin/Math.cos
//   .prop                   pops a target, pushes its property (_x, _y, _alpha...)
//   eval                    pops a name, pushes that variable's value (a clip by its path)
//   dup  swap  pop
//   clone                   duplicateMovieClip: pops depth, new name, source
//   new  callm              NewObject (args.., count, class), CallMethod (args.., count, object, method)
//   stop  play
//   if:L  ifnot:L  jump:L   branches on the popped value
// Unknown words and labels are programming errors (std::logic_error).
#pragma once

#include <string>

#include "swf/SwfAction.h"

namespace quillet {

SwfActionList AssembleOverlayScript(const std::string& program);

// A number as program text: integers plainly, else up to 9 significant digits.
std::string ScriptNumber(double value);

}  // namespace quillet
