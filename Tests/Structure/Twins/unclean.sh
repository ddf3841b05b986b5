#!/usr/bin/env bash
# Splits a path with blanks: what the check of scripts must report.
ls $1
