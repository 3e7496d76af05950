// The one question to the system that the standard library doesn't answer.
#pragma once

bool StandardErrorIsTerminal();
