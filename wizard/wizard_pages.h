#pragma once
int StartWizard(int argc, char** argv);
